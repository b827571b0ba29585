#include "StandardApplets/grabber_basis/RSFx4/RSImageSelector.h"

#include <algorithm>

#include "fabrix/parameter_ids.h"

const std::array<RSImageSelector::Side, 2> RSImageSelector::kSides{
    {
     {FG_IMG_SELECT_PERIOD, &RSImageSelector::setImgSelectPeriod, &RSImageSelector::getImgSelectPeriod,
         &RSImageSelector::mWriteReg_ImgSelectPeriod, 1},
     {FG_IMG_SELECT, &RSImageSelector::setImgSelect, &RSImageSelector::getImgSelect,
         &RSImageSelector::mWriteReg_ImgSelect, 0},
     }
};

RSImageSelector::RSImageSelector(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

void RSImageSelector::initRegisters() {
    const std::array rows{
        BlockRegisterRow{mWriteReg_ImgSelect,       "AAImgSelect",       "ABImgSelect"      },
        BlockRegisterRow{mWriteReg_ImgSelectPeriod, "AAImgSelectPeriod", "ABImgSelectPeriod"},
    };
    for (const BlockRegisterRow& row : rows) initBothPorts({&row, 1});
    if (!IsTwoCamModel()) shareRegisters(rows);
}

int RSImageSelector::setImgSelectPeriod(unsigned int port, unsigned int period) {
    if (!isPort(port)) return FG_INVALID_PORT;
    mImgSelectPeriod[port] = period;
    return FG_OK;
}

unsigned int RSImageSelector::getImgSelectPeriod(unsigned int port) const {
    return isPort(port) ? mImgSelectPeriod[port] : 0;
}

int RSImageSelector::setImgSelect(unsigned int port, unsigned int value) {
    if (!isPort(port)) return FG_INVALID_PORT;
    mImgSelect[port] = value;
    return FG_OK;
}

unsigned int RSImageSelector::getImgSelect(unsigned int port) const { return isPort(port) ? mImgSelect[port] : 0; }

const RSImageSelector::Side* RSImageSelector::sideOf(int id) {
    const auto* found = std::find_if(kSides.begin(), kSides.end(), [id](const Side& side) { return side.id == id; });
    return found == kSides.end() ? nullptr : found;
}

int RSImageSelector::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(parameter);
    if (side == nullptr) return FG_ERROR;
    const unsigned value = (this->*side->get)(port)-side->subtrahend;
    const BlockRegister& reg = this->*side->reg;
    if (isMedium()) {
        for (const int handle : reg.handle) writeHandle(handle, value);
    } else {
        writeHandle(reg.handle[port], value);
    }
    return FG_OK;
}

int RSImageSelector::updateAllParameters(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    bool failed = false;
    for (const Side& side : kSides) failed = updateParameter(port, side.id) < 0 || failed;
    return failed ? FG_ERROR : FG_OK;
}
