/// \file
/// Numbers from and to text. Files always use a full stop, whatever locale the process runs in.
#pragma once

#include <locale.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>

/// \return the decimal integer at the start of \p text, after blanks, wrapped to 32 bits; 0 without one
[[nodiscard]] inline int32_t integerFromText(const char* text) {
    // long long in every build, so that 4294967295 reads as -1 where long has 32 bits as well.
    return static_cast<int32_t>(std::strtoll(text, nullptr, 10));
}

/// \return the number at the start of \p text, after blanks; 0 without one
[[nodiscard]] inline double doubleFromText(const char* text) {
    static const locale_t neutral = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, nullptr, neutral);
}

[[nodiscard]] inline std::string textFromInteger(int32_t value) { return std::to_string(value); }

/// \return \p value with at most twelve significant digits, in exponent form when needed
[[nodiscard]] inline std::string shortTextFromDouble(double value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 12);
    return {text.data(), end.ptr};
}

/// \return \p value with twelve decimals
[[nodiscard]] inline std::string fixedTextFromDouble(double value) {
    // The largest double has 309 digits before the point.
    std::array<char, 384> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 12);
    return {text.data(), end.ptr};
}
