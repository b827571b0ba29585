#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

/// Cuts \p value toward zero and wraps it to the width of \p Integer, as a register of that width would. A plain cast
/// is undefined for a value that does not fit; this is defined for every double: infinity and not a number give 0.
template <class Integer>
[[nodiscard]] Integer truncateTo(double value) {
    static_assert(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>);
    using Unsigned = std::make_unsigned_t<Integer>;
    if (!std::isfinite(value)) return 0;
    const double range = std::ldexp(1.0, std::numeric_limits<Unsigned>::digits);
    const double wrapped = std::fmod(std::trunc(value), range);
    const auto magnitude = static_cast<Unsigned>(std::fabs(wrapped));
    return static_cast<Integer>(wrapped < 0 ? static_cast<Unsigned>(Unsigned{0} - magnitude) : magnitude);
}
