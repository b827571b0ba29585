#pragma once

#include <string>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"
#include "StandardApplets/grabber_basis/parameterInfo.h"

/// What a parameter publishes, as lines that a table of literals can hold.

/// \return "FG_ name | display name | unit | access range visibility saved | description" on a port
inline std::string described(const Fx3Parameter& record, unsigned port) {
    const Fx3Access& access = record.access;
    std::string flags;
    for (const PerPort<int>* flag :
         {&access.accessFlag, &access.rangeFlag, &access.visibilityFlag, &access.writeToConfigFile}) {
        flags += std::to_string((*flag)[port]);
    }
    return record.description.defineName + " | " + record.description.parameterName + " | " +
           record.description.unit.value_or("-") + " | " + flags + " | " + record.description.docDescription;
}

/// \return the entries of an enumeration on a port: "display name=value symbolic name, ... default value"
inline std::string entriesOf(const Fx3Parameter& record, unsigned port) {
    const Fx3ENUMData& entries = *record.data.enumData;
    std::string text;
    for (size_t i = 0; i < entries.valueIdTable[port].size(); ++i) {
        text += entries.valueNameTable[port][i] + "=" + std::to_string(entries.valueIdTable[port][i]) + " " +
                entries.valueDefNameTable[port][i].value_or("-") + ", ";
    }
    return text + "default " + std::to_string(entries.defaultValue[port]);
}

/// \return the limits of a number on a port: "from..to step default"
inline std::string limitsOf(const Fx3Parameter& record, unsigned port) {
    const auto text = [&](const auto& limits, const auto& number) {
        return number(limits.from[port]) + ".." + number(limits.to[port]) + " step " + number(limits.step[port]) +
               " default " + number(limits.defaultValue[port]);
    };
    if (record.data.type == TYPE_INT) {
        return text(*record.data.intData, [](int number) { return std::to_string(number); });
    }
    return text(*record.data.doubleData, [](double number) {
        std::string digits(32, '\0');
        digits.resize(static_cast<size_t>(std::snprintf(digits.data(), digits.size(), "%.15g", number)));
        return digits;
    });
}

/// \return the names of a group node's children, a group's own in parentheses: "A, B, C (D, E)"
inline std::string childrenOf(const RegisterInfo& group) {
    std::string text;
    for (int i = 0; i < group.u.gReg.nrOfElements; ++i) {
        const RegisterInfo& child = *group.u.gReg.elements[i];
        if (!text.empty()) text += ", ";
        text += child.name;
        if (child.format == REG_FORMAT_GROUP) text += " (" + childrenOf(child) + ")";
    }
    return text;
}

/// \return the top-level groups from \p first on, in the tree's order: "Group: children; Group: children"
inline std::string treeOf(const RegisterInfo* first) {
    std::string text;
    for (const RegisterInfo* group = first; group != nullptr; group = group->next) {
        if (!text.empty()) text += "; ";
        text += std::string(group->name) + ": " + childrenOf(*group);
    }
    return text;
}
