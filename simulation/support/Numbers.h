#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace simulation {

/// The number that \p text consists of: nothing before it, nothing after it, a full stop as decimal point.
template <class Number>
[[nodiscard]] std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace simulation
