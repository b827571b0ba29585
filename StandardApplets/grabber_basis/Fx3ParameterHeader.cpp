#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"

#include <algorithm>
#include <iterator>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"

namespace {

/// \return the number of the parameter, without the selector of a read
int parameterOf(int id) { return static_cast<int>(static_cast<unsigned>(id) & FG_PARAMETER_ID_MASK); }

/// \return the selector of a read
unsigned selectorOf(int id) { return static_cast<unsigned>(id) & ~FG_PARAMETER_ID_MASK; }

}  // namespace

Fx3ParameterHeader::Fx3ParameterHeader() : paramInfo(std::make_unique<Fg_ParameterInfo>()) {}

Fx3ParameterHeader::~Fx3ParameterHeader() {
    for (SearchEntry& entry : paramSearchTable) entry.record.reset();
}

// ---- Modules

int Fx3ParameterHeader::addModule(RSMaster* module, int specialModule) {
    std::unique_ptr<RSMaster> owned(module);
    appletModules[nbModules] = std::move(owned);
    if (specialModule == kShadingModule) m_shadingModule = module;
    return nbModules++;
}

RSMaster* Fx3ParameterHeader::getModule(int index) const {
    const auto found = appletModules.find(index);
    return found == appletModules.end() ? nullptr : found->second.get();
}

RSMaster* Fx3ParameterHeader::getShadingModule() const { return m_shadingModule; }

int Fx3ParameterHeader::deleteAllModules() {
    m_shadingModule = nullptr;
    for (auto& [index, module] : appletModules) module.reset();
    appletModules.clear();
    return FG_OK;
}

int Fx3ParameterHeader::updateAllParametersPS(unsigned int port) {
    int sum = FG_OK;
    for (const auto& [index, module] : appletModules) sum += module->updateAllParameters(port);
    return sum;
}

int Fx3ParameterHeader::getRegisterInitSuccess() const {
    for (const auto& [index, module] : appletModules) {
        if (const int status = module->getRegisterInitSuccess(); status != FG_OK) return status;
    }
    return FG_OK;
}

void Fx3ParameterHeader::initAllRegisterWithCacheValue() {}

// ---- Records

Fx3ParameterHeader::SearchTable::const_iterator Fx3ParameterHeader::placeOf(int id) const {
    return std::lower_bound(paramSearchTable.begin(), paramSearchTable.end(), id,
                            [](const SearchEntry& entry, int wanted) { return entry.id < wanted; });
}

void Fx3ParameterHeader::addSearchEntry(int id, Fx3Parameter* entry) {
    auto place = paramSearchTable.begin() + (placeOf(id) - paramSearchTable.cbegin());
    const bool isKnown = place != paramSearchTable.end() && place->id == id;
    // Taken over last: where there is no room for it, it stays with the caller.
    mIndex.reserve();
    if (!isKnown) place = paramSearchTable.insert(place, SearchEntry{id, nullptr});
    mIndex.add(entry);
    place->record.reset(entry);
}

Fx3Parameter* Fx3ParameterHeader::searchParameterById(int id) const { return mIndex.find(parameterOf(id)); }

Fx3Parameter* Fx3ParameterHeader::searchParameterByName(const char* name) const {
    const auto found = std::find_if(paramSearchTable.begin(), paramSearchTable.end(), [name](const SearchEntry& entry) {
        return entry.record->description.parameterName == name;
    });
    return found == paramSearchTable.end() ? nullptr : found->record.get();
}

Fx3Parameter* Fx3ParameterHeader::searchParameterByDefName(const char* defName) const {
    const auto found =
        std::find_if(paramSearchTable.begin(), paramSearchTable.end(),
                     [defName](const SearchEntry& entry) { return entry.record->description.defineName == defName; });
    return found == paramSearchTable.end() ? nullptr : found->record.get();
}

int Fx3ParameterHeader::getParameterIdByName(const char* name) const {
    const Fx3Parameter* record = name == nullptr ? nullptr : searchParameterByDefName(name);
    return record == nullptr ? 0 : record->description.id;
}

int Fx3ParameterHeader::getParamCount() const { return static_cast<int>(paramSearchTable.size()); }

Fx3Parameter* Fx3ParameterHeader::getParameterAt(int index) const {
    if (index < 0 || index >= getParamCount()) return nullptr;
    return paramSearchTable[static_cast<size_t>(index)].record.get();
}

const char* Fx3ParameterHeader::getParameterName(int index) const {
    const Fx3Parameter* record = getParameterAt(index);
    return record == nullptr ? nullptr : record->description.defineName.c_str();
}

int Fx3ParameterHeader::getParameterId(int index) const {
    const Fx3Parameter* record = getParameterAt(index);
    return record == nullptr ? 0 : record->description.id;
}

const char* Fx3ParameterHeader::getDocUrlByDefName(const char* defName) const {
    const Fx3Parameter* record = searchParameterByDefName(defName);
    return record == nullptr ? nullptr : record->mParent->getDocModuleURL(record->description.id);
}

// ---- Values

int Fx3ParameterHeader::setParameterById(int id, const void* Value, unsigned int port, bool check, FgParamTypes type) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (record->mParent->getFgBase()->getIsMedium() && port != 0) return FG_INVALID_PORT;
    const int formerActivePort = record->mParent->getActivePort();
    if (check) {
        if (const int refused = record->checkParameter(Value, port, type); refused != FG_OK) return refused;
    }
    if (Value == nullptr) return FG_INVALID_ARGUMENT;
    if (record->hasKnownType()) {
        if (const int failed = record->setToRegister(port, Value); failed != FG_OK) return failed;
    }
    return afterWrite(*record, port, formerActivePort);
}

/// Brings everything that follows from a stored value up to date.
int Fx3ParameterHeader::afterWrite(Fx3Parameter& record, unsigned int port, int formerActivePort) {
    if (descriptionsInvalidated) updateAllDescriptions(false, -1);
    const int activePort = record.mParent->getActivePort();
    if (record.description.updateAll) return updateAllParametersPS(port);
    if (activePort != formerActivePort && !record.mParent->IsTwoCamModel()) {
        return updateAllParametersPS(static_cast<unsigned>(activePort));
    }
    const int failed = record.mParent->updateParameter(port, record.description.id);
    if (failed != FG_OK) return failed;
    return runDependencies(record, static_cast<int>(port));
}

int Fx3ParameterHeader::getParameterById(int id, void* Value, int port, FgParamTypes /*type*/) const {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    if (!isPort(port)) return FG_INVALID_PORT;
    if (Value == nullptr) return FG_INVALID_ARGUMENT;
    const auto portIndex = static_cast<unsigned>(port);
    switch (selectorOf(id)) {
        case FG_SELECT_MINIMUM:
            return getLimitMin(record, Value, port);
        case FG_SELECT_MAXIMUM:
            return getLimitMax(record, Value, port);
        case FG_SELECT_ACCESS:
            putValue(Value, record->access.accessFlag[portIndex]);
            return FG_OK;
        default:
            break;
    }
    if (!record->hasKnownType()) return FG_TYPE_NOT_SUPPORTED;
    return record->mParent->getParamFromRs(record->description.id, Value, portIndex);
}

int Fx3ParameterHeader::getParameterById(int id, int* value, int port) const {
    return getParameterById(id, value, port, FG_PARAM_TYPE_INT32_T);
}

int Fx3ParameterHeader::getParameterById(int id, unsigned int* value, int port) const {
    return getParameterById(id, value, port, FG_PARAM_TYPE_UINT32_T);
}

int Fx3ParameterHeader::getParameterById(int id, double* value, int port) const {
    return getParameterById(id, value, port, FG_PARAM_TYPE_DOUBLE);
}

int Fx3ParameterHeader::checkParameterById(int id, const void* Value, unsigned int port, FgParamTypes type) const {
    const Fx3Parameter* record = searchParameterById(id);
    return record == nullptr ? FG_INVALID_ARGUMENT : record->checkParameter(Value, port, type);
}

int Fx3ParameterHeader::getLimitMin(Fx3Parameter* itemTmp, void* value, int port) const {
    if (!isPort(port)) return FG_INVALID_PORT;
    const auto index = static_cast<unsigned>(port);
    const Fx3Data& data = itemTmp->data;
    if (data.intData) {
        putValue(value, data.intData->from[index]);
    } else if (data.doubleData) {
        putValue(value, data.doubleData->from[index]);
    } else if (data.enumData && !data.enumData->valueIdTable[index].empty()) {
        putValue(value, data.enumData->valueIdTable[index].front());
    } else {
        return FG_NOT_SUPPORTED;
    }
    return FG_OK;
}

int Fx3ParameterHeader::getLimitMax(Fx3Parameter* itemTmp, void* value, int port) const {
    if (!isPort(port)) return FG_INVALID_PORT;
    const auto index = static_cast<unsigned>(port);
    const Fx3Data& data = itemTmp->data;
    if (data.intData) {
        putValue(value, data.intData->to[index]);
    } else if (data.doubleData) {
        putValue(value, data.doubleData->to[index]);
    } else if (data.enumData && !data.enumData->valueIdTable[index].empty()) {
        putValue(value, data.enumData->valueIdTable[index].back());
    } else {
        return FG_NOT_SUPPORTED;
    }
    return FG_OK;
}

// ---- Dependencies

int Fx3ParameterHeader::addUpdateDependency(int mode, int id, int id2Update, bool updateAllModule) {
    Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_OK;
    const DepStruct dependency{mode, id2Update, updateAllModule ? 1 : 0};
    std::vector<DepStruct>& known = record->description.paramUpdateDep;
    if (std::find(known.begin(), known.end(), dependency) == known.end()) known.push_back(dependency);
    return FG_OK;
}

int Fx3ParameterHeader::updateDependency(int id, int port) {
    const Fx3Parameter* record = searchParameterById(id);
    if (record == nullptr) return FG_OK;
    return isPort(port) ? runDependencies(*record, port) : FG_INVALID_PORT;
}

/// \return the result of the last dependency that ran
int Fx3ParameterHeader::runDependencies(const Fx3Parameter& record, int port) {
    int last = FG_OK;
    for (const DepStruct& dependency : record.description.paramUpdateDep) {
        const Fx3Parameter* dependent = searchParameterById(dependency.id);
        if (dependent != nullptr) last = runDependency(dependency, *dependent->mParent, port);
    }
    return last;
}

int Fx3ParameterHeader::runDependency(const DepStruct& dependency, RSMaster& module, int port) {
    const auto portIndex = static_cast<unsigned>(port);
    if (dependency.mode == 0) {
        return dependency.updateAll == 0 ? module.updateParameter(portIndex, dependency.id)
                                         : module.updateAllParameters(portIndex);
    }
    return dependency.updateAll == 0 ? module.addStandardPS(portIndex, false) : module.updateAllDescriptions(false);
}
