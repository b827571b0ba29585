#pragma once

#include <string>
#include <vector>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"

/// \return everything that is published of a parameter on a port, as one line:
///         "FG_X | name | unit | access range visibility inConfigFiles | limits | description"
inline std::string parameterText(const Fx3Parameter& record, unsigned port) {
    const auto number = [](double value) {
        std::string text = std::to_string(value);
        text.erase(text.find_last_not_of('0') + 1);
        return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
    };
    const auto range = [&](const char* type, const auto& limits) {
        return type + number(limits.from[port]) + ".." + number(limits.to[port]) + " step " +
               number(limits.step[port]) + " default " + number(limits.defaultValue[port]);
    };
    std::string limits = "other";
    if (record.data.type == TYPE_INT) limits = range("int ", *record.data.intData);
    if (record.data.type == TYPE_DOUBLE) limits = range("double ", *record.data.doubleData);
    if (record.data.type == TYPE_ENUM) {
        const Fx3ENUMData& entries = *record.data.enumData;
        limits = "enum";
        for (size_t i = 0; i < entries.valueIdTable[port].size(); ++i) {
            limits += " [" + entries.valueNameTable[port][i] + "]" + std::to_string(entries.valueIdTable[port][i]) +
                      "=" + entries.valueDefNameTable[port][i].value_or("-");
        }
        limits += " default " + std::to_string(entries.defaultValue[port]);
    }
    const Fx3ParamInterface& names = record.description;
    const Fx3Access& access = record.access;
    return names.defineName + " | " + names.parameterName + " | " + names.unit.value_or("-") + " | " +
           std::to_string(access.accessFlag[port]) + " " + std::to_string(access.rangeFlag[port]) + " " +
           std::to_string(access.visibilityFlag[port]) + " " + std::to_string(access.writeToConfigFile[port]) + " | " +
           limits + " | " + names.docDescription;
}

/// \return the top-level groups of a tree in the order of creation, each as "name: id id ..."
inline std::vector<std::string> groupTexts(const RegisterInfo* head) {
    std::vector<std::string> texts;
    for (const RegisterInfo* group = head; group != nullptr; group = group->next) {
        std::string text = std::string(group->name) + ":";
        for (int i = 0; i < group->u.gReg.nrOfElements; ++i) {
            text += " " + std::to_string(group->u.gReg.elements[i]->id);
        }
        texts.insert(texts.begin(), text);
    }
    return texts;
}
