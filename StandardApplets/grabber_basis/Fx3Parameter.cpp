#include "StandardApplets/grabber_basis/Fx3Parameter.h"

#include <algorithm>

#include "StandardApplets/grabber_basis/Fg_ImageControl.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/result_codes.h"

namespace {

Fx3Data dataFor(FX3ParamType type) {
    Fx3Data data;
    data.type = type;
    switch (type) {
        case TYPE_INT:
            data.intData = std::make_unique<Fx3INTData>();
            break;
        case TYPE_DOUBLE:
            data.doubleData = std::make_unique<Fx3DOUBLEData>();
            break;
        case TYPE_STRING:
            data.stringData = std::make_unique<Fx3STRINGData>();
            break;
        case TYPE_ENUM:
            data.enumData = std::make_unique<Fx3ENUMData>();
            break;
        case TYPE_OTHER:
            data.otherData = std::make_unique<Fx3OTHERData>();
            break;
        case TYPE_DIRECT:
            data.directData = std::make_unique<Fx3DIRECTData>();
            break;
    }
    return data;
}

bool isIntegerTag(FgParamTypes type) {
    return type == FG_PARAM_TYPE_AUTO || (type >= FG_PARAM_TYPE_INT32_T && type <= FG_PARAM_TYPE_UINT64_T);
}

bool isDoubleTag(FgParamTypes type) { return type == FG_PARAM_TYPE_AUTO || type == FG_PARAM_TYPE_DOUBLE; }

}  // namespace

Fx3Parameter::Fx3Parameter(RSMaster* parent, FX3ParamType type, const char* name, const char* defName, int id,
                           const char* unit, bool updateAll)
    : head(parent->getHeader()), data(dataFor(type)), mParent(parent) {
    description.parameterName = name;
    description.defineName = defName;
    if (unit != nullptr) description.unit = unit;
    description.id = id;
    description.updateAll = updateAll;
    if (data.directData) data.directData->regName = name;
    // Last, so that the registry never holds a record whose construction failed.
    if (head->searchParameterById(id) == nullptr) head->addSearchEntry(id, this);
}

Fx3Parameter::~Fx3Parameter() = default;

int Fx3Parameter::setToRegister(unsigned int port, const void* value) {
    return mParent->setParamToRs(description.id, value, port);
}

int Fx3Parameter::setDescr(const char* text) {
    description.docDescription = text;
    return FG_OK;
}

int Fx3Parameter::checkParameter(const void* value, unsigned int port, FgParamTypes type) const {
    if (!isPort(port)) return FG_INVALID_PORT;
    const int accessBits = access.accessFlag[port];
    if ((accessBits & kWritable) == 0) return FG_NOT_WRITABLE;
    if ((accessBits & kWritableWhileAcquiring) == 0 &&
        mParent->getFgBase()->getImageControl()->getImageDMATransferActive(static_cast<int>(port))) {
        return FG_ACQUISITION_RUNNING;
    }
    return value == nullptr ? FG_INVALID_ARGUMENT : checkByType(value, port, type);
}

int Fx3Parameter::checkByType(const void* value, unsigned int port, FgParamTypes type) const {
    switch (data.type) {
        case TYPE_INT:
            return isIntegerTag(type) ? checkInteger(takeValue<int>(value), port) : FG_INVALID_ARGUMENT;
        case TYPE_DOUBLE:
            return isDoubleTag(type) ? checkDouble(takeValue<double>(value), port) : FG_INVALID_ARGUMENT;
        case TYPE_ENUM:
            return isIntegerTag(type) ? checkEntry(takeValue<int>(value), port) : FG_INVALID_ARGUMENT;
        case TYPE_STRING:
        case TYPE_DIRECT:
            return FG_OK;
        case TYPE_OTHER:
            return mParent->checkParam(description.id, value, port);
    }
    return FG_TYPE_NOT_SUPPORTED;
}

int Fx3Parameter::checkInteger(int value, unsigned int port) const {
    const Fx3INTData& limits = *data.intData;
    if (value < limits.from[port] || value > limits.to[port]) return FG_VALUE_OUT_OF_RANGE;
    // The step counts from 0, not from the minimum. Every number is a multiple of -1, and INT_MIN % -1 has no value.
    const int step = limits.step[port];
    if (step != 0 && step != -1 && value % step != 0) return FG_NOT_A_STEP;
    return FG_OK;
}

int Fx3Parameter::checkDouble(double value, unsigned int port) const {
    const Fx3DOUBLEData& limits = *data.doubleData;
    // Written so that not a number, which compares with nothing, is refused.
    const bool isInside = limits.from[port] <= value && value <= limits.to[port];
    return isInside ? FG_OK : FG_VALUE_OUT_OF_RANGE;
}

int Fx3Parameter::checkEntry(int value, unsigned int port) const {
    const std::vector<int>& entries = data.enumData->valueIdTable[port];
    return std::find(entries.begin(), entries.end(), value) == entries.end() ? FG_VALUE_OUT_OF_RANGE : FG_OK;
}

Fx3ParameterDirectReg::Fx3ParameterDirectReg(RSMaster* parent, const char* name, const char* defName, int id,
                                             int regPtr, int direction, int bitRange)
    : Fx3Parameter(parent, TYPE_DIRECT, name, defName, id, nullptr, false) {
    data.directData->direction = direction;
    data.directData->regPtr = regPtr;
    data.directData->bitRange = bitRange;
    access.writeToConfigFile.fill(0);
}

Fx3ParameterDirectReg::~Fx3ParameterDirectReg() = default;

int Fx3ParameterDirectReg::setToRegister(unsigned int port, const void* value) {
    if (data.directData->regPtr == 0) return FG_TYPE_NOT_SUPPORTED;
    if (data.directData->direction != 1) return FG_NOT_WRITABLE;
    return mParent->setParamToRs(description.id, value, port);
}
