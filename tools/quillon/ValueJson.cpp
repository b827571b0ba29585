#include "ValueJson.h"

#include <fmt/format.h>

#include "Units.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

using host::ParameterInfo;
using host::ParameterType;

const char* typeName(ParameterType type) {
    switch (type) {
        case ParameterType::Integer:
            return "integer";
        case ParameterType::Double:
            return "double";
        case ParameterType::Enumeration:
            return "enumeration";
        case ParameterType::Text:
            return "text";
        case ParameterType::Structure:
            break;
    }
    return "structure";
}

Json limitJson(const ParameterInfo& parameter, double limit) {
    if (parameter.type == ParameterType::Integer) return static_cast<int64_t>(limit);
    return limit;
}

Json entriesJson(const ParameterInfo& parameter) {
    Json entries = Json::array();
    for (const host::EnumerationEntry& entry : parameter.entries) {
        Json object{
            {"value", entry.value}
        };
        if (!entry.name.empty()) object["name"] = entry.name;
        if (!entry.displayName.empty()) object["displayName"] = entry.displayName;
        entries.push_back(std::move(object));
    }
    return entries;
}

Json accessJson(const ParameterInfo& parameter) {
    Json access = Json::array();
    if (parameter.isReadable()) access.push_back("read");
    if (parameter.isWritable()) access.push_back("write");
    if (parameter.isChangeable()) access.push_back("change");
    return access;
}

}  // namespace

Json valueJson(const ParameterInfo& parameter, const host::ParameterValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<double>(&value)) return *number;
    const int32_t integer = std::get<int32_t>(value);
    if (parameter.isUnsigned()) return static_cast<uint32_t>(integer);
    return integer;
}

Json parameterJson(const ParameterInfo& parameter, const host::ParameterValue* value) {
    Json object{
        {"id",   parameter.id  },
        {"name", parameter.name}
    };
    if (!parameter.displayName.empty()) object["displayName"] = parameter.displayName;
    object["type"] = typeName(parameter.type);
    if (value != nullptr) object["value"] = valueJson(parameter, *value);
    if (const std::string_view unit = unitOf(parameter.unit); !unit.empty()) object["unit"] = unit;
    if (hasRange(parameter)) {
        object["min"] = limitJson(parameter, parameter.limits.minimum);
        object["max"] = limitJson(parameter, parameter.limits.maximum);
        if (parameter.type == ParameterType::Integer && parameter.limits.step >= 1) {
            object["step"] = limitJson(parameter, parameter.limits.step);
        }
    }
    if (!parameter.entries.empty()) object["entries"] = entriesJson(parameter);
    object["access"] = accessJson(parameter);
    if (!parameter.group.empty()) object["group"] = parameter.group;
    return object;
}

void printJson(const Json& document) {
    fmt::print("{}\n", document.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace quillon::tool
