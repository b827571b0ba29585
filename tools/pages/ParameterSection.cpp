#include "ParameterSection.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "Html.h"
#include "fabrix/parameter_ids.h"

namespace quillon::pages {

namespace {

using host::ParameterInfo;
using host::ParameterType;

/// What differs from board to board, or from moment to moment, has no value to be printed.
constexpr std::array kMeasured{
    FG_PLX_CLK, FG_MEASURED_PCIE_CLK, FG_CAMSTATUS,        FG_DMASTATUS, FG_CAMSTATUS_EXTENDED, FG_DIGIO_INPUT,
    FG_DOC_URL, FG_PARAM_DESCR,       FG_REG_VALUE_STRING, FG_IMAGE_TAG, FG_SENDSOFTWARETRIGGER};

/// Bits of the access, from none to all.
constexpr std::array kAccess{"none",
                             "read",
                             "write",
                             "read and write",
                             "none",
                             "read",
                             "write, also while an acquisition runs",
                             "read and write, also while an acquisition runs"};

const char* typeName(ParameterType type) {
    switch (type) {
        case ParameterType::Integer:
            return "integer, 32 bits";
        case ParameterType::Double:
            return "double";
        case ParameterType::Enumeration:
            return "enumeration, 32 bits";
        case ParameterType::Text:
            return "text";
        case ParameterType::Structure:
            break;
    }
    return "structure, see <code>include/fabrix</code>";
}

std::string number(const ParameterInfo& parameter, double value) {
    return parameter.type == ParameterType::Integer ? fmt::format("{}", static_cast<int64_t>(value))
                                                    : fmt::format("{:.12g}", value);
}

/// \return the unit without the brackets in which it is published, after a blank; empty without one
std::string unitOf(const ParameterInfo& parameter) {
    std::string unit = parameter.unit;
    std::erase_if(unit, [](char c) { return c == '[' || c == ']'; });
    return unit.empty() ? unit : " " + escaped(unit);
}

std::string entryName(const host::EnumerationEntry& entry) {
    return fmt::format("<code>{}</code> = {}", escaped(entry.name.empty() ? entry.displayName : entry.name),
                       entry.value);
}

/// \return the value as HTML; empty where there is none to be printed
std::string valueText(const host::Grabber& grabber, const ParameterInfo& parameter) {
    if (std::find(kMeasured.begin(), kMeasured.end(), parameter.id) != kMeasured.end()) return {};
    if ((parameter.access & 1) == 0) return {};
    host::ParameterValue value;
    if (host::readValue(grabber, parameter, value) < 0) return {};
    if (const auto* text = std::get_if<std::string>(&value)) return escaped(*text);
    if (const auto* real = std::get_if<double>(&value)) return number(parameter, *real) + unitOf(parameter);
    const int32_t integer = std::get<int32_t>(value);
    for (const host::EnumerationEntry& entry : parameter.entries) {
        if (entry.value == integer) return entryName(entry);
    }
    return fmt::format("{}{}", integer, unitOf(parameter));
}

std::string limitsText(const ParameterInfo& parameter) {
    const host::Limits& limits = parameter.limits;
    const bool isLimited = parameter.hasLimits && limits.minimum < limits.maximum;
    if (!isLimited || parameter.type == ParameterType::Enumeration) return {};
    std::string text = fmt::format("{} to {}{}", number(parameter, limits.minimum), number(parameter, limits.maximum),
                                   unitOf(parameter));
    if (limits.step > 0) text += fmt::format(", step {}", number(parameter, limits.step));
    return text;
}

std::string entriesText(const ParameterInfo& parameter) {
    std::string text;
    for (const host::EnumerationEntry& entry : parameter.entries) {
        if (!text.empty()) text += "<br>";
        text += fmt::format("{}: <code>{}</code>", entryName(entry), escaped(entry.displayName));
    }
    return text;
}

}  // namespace

std::string parameterSection(const host::Grabber& grabber, const ParameterInfo& parameter,
                             const std::string& description) {
    const std::string name = escaped(parameter.name);
    std::string section = fmt::format("<h2 id=\"{0}\">{0}</h2>\n", name);
    if (!description.empty()) section += fmt::format("<p>{}</p>\n", escaped(description));
    section += "<table>\n";
    const auto fact = [&](const char* what, const std::string& text) {
        if (!text.empty()) section += fmt::format("<tr><th>{}</th><td>{}</td></tr>\n", what, text);
    };
    fact("Display name", escaped(parameter.displayName));
    fact("Group", escaped(parameter.group));
    fact("Identifier", fmt::format("{}", parameter.id));
    fact("Type", typeName(parameter.type));
    fact("After opening", valueText(grabber, parameter));
    fact("Limits after opening", limitsText(parameter));
    fact("Entries", entriesText(parameter));
    fact("Access after opening", kAccess[static_cast<size_t>(parameter.access) % kAccess.size()]);
    return section + "</table>\n";
}

}  // namespace quillon::pages
