// The description side of the registry: limits, flags, groups and the information tree.
#include <array>
#include <cstdio>
#include <new>
#include <span>
#include <tuple>

#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"

namespace {

constexpr int kAllPorts = -1;

std::optional<std::string> optionalText(const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

const char* textOrNull(const std::optional<std::string>& text) { return text ? text->c_str() : nullptr; }

LeafAttributes leafOf(const Fx3Parameter& record, int port) {
    const auto index = static_cast<unsigned>(port);
    return {.name = record.description.parameterName.c_str(),
            .paramName = record.description.defineName.c_str(),
            .accessFlags = record.access.accessFlag[index],
            .rangeFlags = record.access.rangeFlag[index],
            .visibilityFlags = record.access.visibilityFlag[index],
            .unit = textOrNull(record.description.unit),
            .id = record.description.id,
            .port = port};
}

/// Replaces the entries of a port; the new lists are complete before the old ones go.
void storeEntries(Fx3ENUMData& limits, unsigned port, std::span<const EnumField> entries, int defaultValue) {
    std::vector<int> values;
    std::vector<std::string> names;
    std::vector<std::optional<std::string>> defNames;
    for (const EnumField& entry : entries) {
        values.push_back(static_cast<int>(entry.value));
        names.emplace_back(entry.name);
        defNames.push_back(optionalText(entry.defName));
    }
    limits.defaultValue[port] = defaultValue;
    limits.NbEnum[port] = static_cast<int>(entries.size());
    limits.valueIdTable[port] = std::move(values);
    limits.valueNameTable[port] = std::move(names);
    limits.valueDefNameTable[port] = std::move(defNames);
}

/// Writes a default through the module. The result is not looked at: a refused default leaves the cached value.
void applyDefault(Fx3Parameter& record, int port, const void* value) {
    std::ignore = record.setToRegister(static_cast<unsigned>(port), value);
}

}  // namespace

int Fx3ParameterHeader::setDescr(int id, const char* description) {
    Fx3Parameter* record = searchParameterById(id);
    return record == nullptr ? FG_INVALID_ARGUMENT : record->setDescr(description);
}

int Fx3ParameterHeader::setFlags(int id, int port, int accessFlag, int rangeFlag, int visiFlag, int writeToConfig) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    const auto index = static_cast<unsigned>(port);
    const bool isOverridden = allowAllAccess != 0 && id != FG_GLOBAL_ACCESS;
    const int effectiveAccess = isOverridden ? allowAllAccess : accessFlag;
    record->access.accessFlag[index] = effectiveAccess;
    record->access.rangeFlag[index] = rangeFlag;
    record->access.visibilityFlag[index] = visiFlag;
    record->access.writeToConfigFile[index] = writeToConfig;
    if (RegisterInfo* node = nodeOf(*record, port); node != nullptr) {
        node->accessFlags = effectiveAccess;
        node->rangeFlags = rangeFlag;
        node->visibilityFlags = visiFlag;
    }
    return FG_OK;
}

int Fx3ParameterHeader::setLimits(int id, int port, int from, int to, int step, int defaultValue, bool setDefault) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (!record->data.intData) return FG_TYPE_NOT_SUPPORTED;
    const auto index = static_cast<unsigned>(port);
    Fx3INTData& limits = *record->data.intData;
    limits.from[index] = from;
    limits.to[index] = to;
    limits.step[index] = step;
    limits.defaultValue[index] = defaultValue;
    if (RegisterInfo* node = nodeOf(*record, port); node != nullptr) {
        node->u.iReg.from = from;
        node->u.iReg.to = to;
        node->u.iReg.steps = step;
    }
    if (setDefault) applyDefault(*record, port, &defaultValue);
    return FG_OK;
}

int Fx3ParameterHeader::setLimits(int id, int port, double from, double to, double step, double defaultValue,
                                  bool setDefault) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (!record->data.doubleData) return FG_TYPE_NOT_SUPPORTED;
    const auto index = static_cast<unsigned>(port);
    Fx3DOUBLEData& limits = *record->data.doubleData;
    limits.from[index] = from;
    limits.to[index] = to;
    limits.step[index] = step;
    limits.defaultValue[index] = defaultValue;
    if (RegisterInfo* node = nodeOf(*record, port); node != nullptr) {
        node->u.dReg.from = from;
        node->u.dReg.to = to;
        node->u.dReg.steps = step;
    }
    if (setDefault) applyDefault(*record, port, &defaultValue);
    return FG_OK;
}

int Fx3ParameterHeader::setLimits(int id, int port, const EnumField* eField, int NbElements, int defaultValue,
                                  bool setDefault) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (!record->data.enumData) return FG_TYPE_NOT_SUPPORTED;
    const auto index = static_cast<unsigned>(port);
    const std::span entries(eField, static_cast<size_t>(NbElements));
    storeEntries(*record->data.enumData, index, entries, defaultValue);
    if (RegisterInfo* node = nodeOf(*record, port); node != nullptr) Fg_ParameterInfo::replaceEntries(*node, entries);
    if (setDefault) applyDefault(*record, port, &defaultValue);
    return FG_OK;
}

int Fx3ParameterHeader::setLimits(int id, int port, const char* defaultString, const char* extension, bool setDefault) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (!record->data.stringData) return FG_TYPE_NOT_SUPPORTED;
    const auto index = static_cast<unsigned>(port);
    record->data.stringData->defaultString[index] = defaultString;
    record->data.stringData->extension[index] = optionalText(extension);
    if (RegisterInfo* node = nodeOf(*record, port); node != nullptr) {
        Fg_ParameterInfo::replaceFileExtension(*node, extension);
    }
    if (setDefault) applyDefault(*record, port, defaultString);
    return FG_OK;
}

int Fx3ParameterHeader::setLimits(int id, int port, void* defaultValue, bool setDefault) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (setDefault) applyDefault(*record, port, defaultValue);
    return FG_OK;
}

// ---- Information tree

RegisterInfo* Fx3ParameterHeader::addGroupInfo(int port, RegisterInfo* parent, const char* name) {
    return paramInfo->addGroupInfo(port, parent, name);
}

int Fx3ParameterHeader::setGroup(int id, int port, RegisterInfo* group) {
    Fx3Parameter* record = searchParameterById(id);
    if (group == nullptr || record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    record->description.group[static_cast<unsigned>(port)] = group;
    if (record->data.type == TYPE_DIRECT) {
        addDirectRegisterLeaves(port, group);
    } else {
        addLeaf(*record, port, group);
    }
    return FG_OK;
}

void Fx3ParameterHeader::addLeaf(Fx3Parameter& record, int port, RegisterInfo* group) {
    const auto index = static_cast<unsigned>(port);
    const LeafAttributes leaf = leafOf(record, port);
    if (const Fx3INTData* limits = record.data.intData.get(); limits != nullptr) {
        paramInfo->addInfoInt(group, leaf, limits->from[index], limits->to[index], limits->step[index]);
    } else if (const Fx3DOUBLEData* doubleLimits = record.data.doubleData.get(); doubleLimits != nullptr) {
        paramInfo->addInfoDouble(group, leaf, doubleLimits->from[index], doubleLimits->to[index],
                                 doubleLimits->step[index]);
    } else if (const Fx3STRINGData* texts = record.data.stringData.get(); texts != nullptr) {
        paramInfo->addInfoString(group, leaf, textOrNull(texts->extension[index]));
    } else if (const Fx3ENUMData* entries = record.data.enumData.get(); entries != nullptr) {
        RegisterInfo* node = paramInfo->addInfoEnum(group, leaf, entries->NbEnum[index]);
        for (int i = 0; node != nullptr && i < entries->NbEnum[index]; ++i) {
            const auto k = static_cast<size_t>(i);
            const int added = paramInfo->addEnumNameValue(node, i, entries->valueNameTable[index][k].c_str(),
                                                          entries->valueIdTable[index][k],
                                                          textOrNull(entries->valueDefNameTable[index][k]));
            // A tree with an entry that has no name must not reach a host.
            if (added == FG_OUT_OF_RESOURCES) throw std::bad_alloc();
        }
    }
}

void Fx3ParameterHeader::addDirectRegisterLeaves(int port, RegisterInfo* group) {
    const auto index = static_cast<unsigned>(port);
    for (int k = 1; k <= nbHapReg; ++k) {
        Fx3Parameter* record = searchParameterById(FG_DIRECT_REGISTER_BASE + k);
        if (record == nullptr || !record->data.directData) continue;
        record->description.group[index] = group;
        const int width = record->data.directData->bitRange;
        std::array<char, kNameLength + 1> name{};
        std::snprintf(name.data(), name.size(), "%s (%d)", record->description.parameterName.c_str(), width);
        LeafAttributes leaf = leafOf(*record, port);
        leaf.name = name.data();
        leaf.rangeFlags = 1;
        leaf.visibilityFlags = 1;
        // 32 bits and more: all bits set, which reads as -1. A width that is no width counts so, too.
        const bool fitsInt = width >= 0 && width < 32;
        const int to = fitsInt ? static_cast<int>((uint32_t{1} << width) - 1) : -1;
        paramInfo->addInfoInt(group, leaf, 0, to, 1);
    }
}

RegisterInfo* Fx3ParameterHeader::searchRegisterInfoById(RegisterInfo* group, int id, int port) const {
    if (group == nullptr || group->format != REG_FORMAT_GROUP) return nullptr;
    const std::span children(group->u.gReg.elements, static_cast<size_t>(group->u.gReg.nrOfElements));
    for (RegisterInfo* child : children) {
        if (child->id == id && child->port == port) return child;
    }
    return nullptr;
}

RegisterInfo* Fx3ParameterHeader::nodeOf(const Fx3Parameter& record, int port) const {
    return searchRegisterInfoById(record.description.group[static_cast<unsigned>(port)], record.description.id, port);
}

void Fx3ParameterHeader::updateAllDescriptions(bool updateDefault, int onPort) {
    if (onPort == kAllPorts) {
        for (unsigned port = 0; port < kPorts; ++port) {
            updateAllDescriptionsOnPort(updateDefault, static_cast<int>(port));
        }
    } else {
        updateAllDescriptionsOnPort(updateDefault, onPort);
    }
    descriptionsInvalidated = false;
}

void Fx3ParameterHeader::updateAllDescriptionsOnPort(bool updateDefault, int port) {
    if (!isPort(port)) return;
    for (const auto& [number, module] : appletModules) {
        std::ignore = module->addStandardPS(static_cast<unsigned>(port), updateDefault);
    }
    finalizeDescriptionsOnPort(port);
}

void Fx3ParameterHeader::finalizeDescriptionsOnPort(int port) { paramInfo->finalize(port); }

RegisterInfo* Fx3ParameterHeader::getRegisterInfo(int port) const {
    return isPort(port) ? paramInfo->getRegisterInfo(port) : nullptr;
}

void Fx3ParameterHeader::changeAllowAllAccess(int access) {
    if (access == allowAllAccess) return;
    allowAllAccess = access;
    descriptionsInvalidated = true;
}

int Fx3ParameterHeader::getAllowAllAccess() const { return allowAllAccess; }

void Fx3ParameterHeader::setDirectRegisters(int count) { nbHapReg = count; }
