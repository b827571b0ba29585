#include "StandardApplets/grabber_basis/PSFx4/PSDirectReg.h"

#include <array>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kMayBeWritten = 1;                           // direction of a register
constexpr std::array kGroup{FG_DIRECT_REGISTER_BASE + 1};  // brings all of them

}  // namespace

PSDirectReg::PSDirectReg(Fg_StdMaster* master) : RSMaster(master) {
    if (mBoard == nullptr) return;
    int error = FG_OK;
    const int count = mBoard->getNrOfRegister(&error);
    if (count <= 0) return;
    for (int number = 1; number <= count; ++number) publishRegister(number);
    header->setDirectRegisters(count);
}

void PSDirectReg::publishRegister(int number) {
    int error = FG_OK;
    const char* name = mBoard->getRegisterName(number, &error);
    if (name == nullptr) return;
    std::string defineName = std::string("DRA_") + name;
    if (defineName.size() > kNameLength) defineName.resize(kNameLength);
    const int handle = mBoard->getHapRegisterByName(name, &error);
    const int direction = mBoard->getRegisterDirection(number, &error);
    auto record =
        std::make_unique<Fx3ParameterDirectReg>(this, name, defineName.c_str(), FG_DIRECT_REGISTER_BASE + number,
                                                handle, direction, mBoard->getRegisterBitRange(number, &error));
    Fx3Parameter* entered = record.get();
    if (header->searchParameterById(entered->description.id) != entered) return;  // the identifier was known already
    std::ignore = record.release();                                               // to the registry
    entered->access.accessFlag.fill(direction == kMayBeWritten ? kReadWriteAlways : kReadOnly);
    entered->access.visibilityFlag.fill(1);
    entered->setDescr("No Description for this item.");
}

/// \return the record of a register, or null when \p id is no register's
Fx3Parameter* PSDirectReg::recordOf(int id) const {
    Fx3Parameter* record = header->searchParameterById(id);
    return record != nullptr && record->data.directData ? record : nullptr;
}

int PSDirectReg::getParamFromRs(int id, void* val, unsigned int /*port*/) {
    const Fx3Parameter* record = recordOf(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    putValue(val, static_cast<uint32_t>(mBoard->readRegister(record->data.directData->regPtr)));
    return FG_OK;
}

int PSDirectReg::setParamToRs(int id, const void* val, unsigned int /*port*/) {
    const Fx3Parameter* record = recordOf(id);
    if (record == nullptr) return FG_INVALID_ARGUMENT;
    Fx3DIRECTData& direct = *record->data.directData;
    direct.regValue = takeValue<uint32_t>(val);
    return writeHandle(direct.regPtr, direct.regValue);
}

int PSDirectReg::addStandardPS(unsigned int port, bool /*updateDefault*/) {
    if (!isPort(port)) return FG_INVALID_PORT;
    publishGroup(*header, port, nullptr, "Reg. Direct Access", kGroup);
    return FG_OK;
}

void PSDirectReg::setRegisterInfoTree(unsigned int /*port*/) {
    throw std::runtime_error("you should not be here. Go away.");
}

const char* PSDirectReg::getDocModuleURL(int /*id*/) { return nullptr; }
