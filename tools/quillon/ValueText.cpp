#include "ValueText.h"

#include <fmt/format.h>
#include <strings.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "ToolError.h"
#include "Units.h"

namespace quillon::tool {

namespace {

using host::EnumerationEntry;
using host::ParameterInfo;
using host::ParameterType;
using host::ParameterValue;

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view withoutPrefix(std::string_view name) {
    return name.size() > 3 && strncasecmp(name.data(), "FG_", 3) == 0 ? name.substr(3) : name;
}

std::optional<int32_t> parseInteger(std::string_view text, bool isUnsigned = false) {
    const bool isNegative = text.starts_with('-');
    if (isNegative) text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) text.remove_prefix(2);
    uint64_t magnitude = 0;
    const auto [end, problem] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, isHexadecimal ? 16 : 10);
    if (problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if (isUnsigned) {
        if (isNegative || magnitude > UINT32_MAX) return std::nullopt;
        return static_cast<int32_t>(magnitude);
    }
    const uint64_t largest = static_cast<uint64_t>(INT32_MAX) + (isNegative ? 1 : 0);
    if (magnitude > largest) return std::nullopt;
    const auto value = static_cast<int64_t>(magnitude);
    return static_cast<int32_t>(isNegative ? -value : value);
}

std::optional<int32_t> parseEntry(const ParameterInfo& parameter, std::string_view text) {
    for (const EnumerationEntry& entry : parameter.entries) {
        const bool isSymbolicName =
            !entry.name.empty() && equalsIgnoringCase(withoutPrefix(text), withoutPrefix(entry.name));
        if (isSymbolicName || equalsIgnoringCase(text, entry.displayName)) return entry.value;
    }
    return parseInteger(text);
}

const std::string& entryName(const EnumerationEntry& entry) {
    return entry.name.empty() ? entry.displayName : entry.name;
}

[[noreturn]] void refuseText(const ParameterInfo& parameter, const std::string& text, const std::string& expected) {
    throw ToolError(kExitUsage, fmt::format("{} = {} refused: {}", parameter.name, text, expected));
}

/// \param quantity what \p text says, for the message
/// \return the number in the parameter's own unit
/// \throws ToolError when the unit does not fit
double inOwnUnit(const ParameterInfo& parameter, const Quantity& quantity, const std::string& text) {
    if (quantity.unit.empty()) return quantity.number;
    const std::string_view own = unitOf(parameter.unit);
    if (own.empty()) {
        refuseText(parameter, text, fmt::format("it has no unit; write {} alone", quantity.numberText));
    }
    const std::optional<Conversion> factors = conversion(quantity.unit, own);
    if (!factors) {
        refuseText(parameter, text,
                   fmt::format("'{}' is no unit for it; its own is {}, and these fit: {}", quantity.unit,
                               parameter.unit, fittingUnits(own)));
    }
    return quantity.number * factors->factor / factors->divisor;
}

[[noreturn]] void refuseInteger(const ParameterInfo& parameter, const std::string& text) {
    refuseText(parameter, text,
               fmt::format("not a whole number{} from {}", parameter.unit.empty() ? "" : " of " + parameter.unit,
                           parameter.isUnsigned() ? "0 to 4294967295" : "-2147483648 to 2147483647"));
}

int32_t integerOf(const ParameterInfo& parameter, const std::string& text) {
    if (const auto value = parseInteger(text, parameter.isUnsigned())) return *value;
    const std::optional<Quantity> quantity = parseQuantity(text);
    // Without a unit, only what is written as an integer is one.
    if (!quantity || quantity->unit.empty()) refuseInteger(parameter, text);
    const double number = inOwnUnit(parameter, *quantity, text);
    if (number != std::floor(number)) {
        refuseText(parameter, text,
                   fmt::format("it is {} {}, and only whole numbers are possible", number, parameter.unit));
    }
    const auto value = parseInteger(fmt::format("{:.0f}", number), parameter.isUnsigned());
    if (!value) refuseInteger(parameter, text);
    return *value;
}

}  // namespace

std::string formatValue(const ParameterInfo& parameter, const ParameterValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<double>(&value)) return fmt::format("{}", *number);
    const int32_t integer = std::get<int32_t>(value);
    for (const EnumerationEntry& entry : parameter.entries) {
        if (entry.value == integer) return fmt::format("{} ({})", entryName(entry), integer);
    }
    if (parameter.isUnsigned()) return fmt::format("{}", static_cast<uint32_t>(integer));
    return fmt::format("{}", integer);
}

std::string formatLimit(const ParameterInfo& parameter, double limit) {
    if (parameter.type == ParameterType::Integer) return fmt::format("{}", static_cast<int64_t>(limit));
    return fmt::format("{}", limit);
}

std::string formatEntries(const ParameterInfo& parameter) {
    std::vector<std::string> texts;
    texts.reserve(parameter.entries.size());
    for (const EnumerationEntry& entry : parameter.entries) {
        texts.push_back(fmt::format("{} ({})", entryName(entry), entry.value));
    }
    return fmt::format("{}", fmt::join(texts, ", "));
}

bool hasRange(const ParameterInfo& parameter) {
    return parameter.hasLimits && (parameter.isWritable() || parameter.limits.minimum != parameter.limits.maximum);
}

std::string formatRange(const ParameterInfo& parameter) {
    if (parameter.type == ParameterType::Enumeration) return formatEntries(parameter);
    if (!hasRange(parameter)) return "";
    const host::Limits& limits = parameter.limits;
    std::string text =
        fmt::format("{} to {}", formatLimit(parameter, limits.minimum), formatLimit(parameter, limits.maximum));
    if (parameter.type == ParameterType::Integer && limits.step > 1) {
        text += ", step " + formatLimit(parameter, limits.step);
    }
    return text;
}

std::string formatAccess(const ParameterInfo& parameter) {
    std::string text;
    text += parameter.isReadable() ? 'r' : '-';
    text += parameter.isWritable() ? 'w' : '-';
    text += parameter.isChangeable() ? 'c' : '-';
    return text;
}

std::string withUnit(const ParameterInfo& parameter, const std::string& number) {
    return parameter.unit.empty() ? number : number + " " + parameter.unit;
}

ParameterValue parseValue(const ParameterInfo& parameter, const std::string& text) {
    switch (parameter.type) {
        case ParameterType::Integer:
            return integerOf(parameter, text);
        case ParameterType::Enumeration:
            if (const auto value = parseEntry(parameter, text)) return *value;
            refuseText(parameter, text, "no such entry; allowed: " + formatEntries(parameter));
        case ParameterType::Double:
            if (const auto quantity = parseQuantity(text)) return inOwnUnit(parameter, *quantity, text);
            refuseText(parameter, text,
                       parameter.unit.empty()
                           ? "not a number (write 2.5 or 1e3)"
                           : fmt::format("not a number (write 2.5, 1e3 or 2.5{})", unitOf(parameter.unit)));
        case ParameterType::Text:
            return text;
        case ParameterType::Structure:
            break;
    }
    refuseText(parameter, text, "its values are structures and cannot be given as text");
}

}  // namespace quillon::tool
