#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"

#include <array>
#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kCamSelectParameter = 6300;  // second identifier of the camera select register
constexpr int kResetPulseWrites = 5;
constexpr unsigned kStatusConnector = 0;

}  // namespace

RSControl::RSControl(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

void RSControl::initRegisters() {
    const std::array rows{
        BlockRegisterRow{mWriteReg_CamSelect, "AACamSelect", nullptr},
        BlockRegisterRow{mWriteReg_SdRamEnableDisable, "AASdramEnable", "ABSdramEnable"},
        BlockRegisterRow{mWriteReg_GlobalWork, "AAglobal_work", "ABglobal_work"},
        BlockRegisterRow{mWriteReg_Reset, "AAReset", "ABReset"},
        BlockRegisterRow{mReadReg_BufferStatus, "AABufferStatus", "ABBufferStatus", kOptional},
    };
    initBlockRegisters(rows);
}

int RSControl::writeEnableDisableGlobalwork(unsigned int port, bool enable) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const int result = writeHandle(mWriteReg_GlobalWork.handle[port], enable ? 1 : 0);
    std::ignore = mBoard->getCameraStatusExtended(kStatusConnector);
    return result;
}

int RSControl::writeRegisterReset(unsigned int port, unsigned int value) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const int result = writeHandle(mWriteReg_Reset.handle[port], value);
    std::ignore = mBoard->getCameraStatusExtended(kStatusConnector);
    return result;
}

int RSControl::writeReset(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    int sum = FG_OK;
    for (int i = 0; i < kResetPulseWrites; ++i) sum += writeRegisterReset(port, 1);
    return sum + writeRegisterReset(port, 0);
}

int RSControl::enableSDRAM(unsigned int port) {
    return isPort(port) ? writeHandle(mWriteReg_SdRamEnableDisable.handle[port], 1) : FG_INVALID_PORT;
}

unsigned int RSControl::getBufferStatus(unsigned int port) {
    if (!isPort(port) || mReadReg_BufferStatus.handle[port] == 0) return 0;
    return static_cast<unsigned>(mBoard->readRegister(mReadReg_BufferStatus.handle[port]));
}

int RSControl::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (parameter) {
        case FG_TIMEOUT:
        case FG_GLOBAL_ACCESS:
            return FG_OK;
        case FG_PORT:
        case kCamSelectParameter:
            if (mWriteReg_CamSelect.handle[port] == 0) return FG_OK;
            return writeHandle(mWriteReg_CamSelect.handle[port], static_cast<uint64_t>(mFg_Base->getActivePort()));
        default:
            return FG_ERROR;
    }
}

int RSControl::updateAllParameters(unsigned int /*port*/) { return FG_OK; }
