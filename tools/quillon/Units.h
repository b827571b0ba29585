#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::tool {

/// A number and the unit that was written behind it.
struct Quantity {
    double number = 0;
    std::string_view numberText;  ///< the number as it was written
    std::string_view unit;        ///< empty when none was given
};

/// Takes a text such as "2.5 ms" apart; the views point into \p text.
/// \return nothing when it does not begin with a number, or when what follows cannot be a unit
std::optional<Quantity> parseQuantity(std::string_view text);

/// \param label unit as the applet publishes it, for example "[us]"
/// \return the unit itself, for example "us"; empty where the label names no unit that a value could have
std::string_view unitOf(std::string_view label);

/// A number in one unit times \c factor, divided by \c divisor, is the number in another.
struct Conversion {
    double factor;
    double divisor;
};

/// \param from unit in any letter case, as \p to
/// \return nothing when the two do not measure the same, or one of them is unknown
std::optional<Conversion> conversion(std::string_view from, std::string_view to);

/// \return the units that can stand for \p unit, for example "s, ms, us, ns"
std::string fittingUnits(std::string_view unit);

}  // namespace quillon::tool
