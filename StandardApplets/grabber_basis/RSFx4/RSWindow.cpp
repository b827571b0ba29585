#include "StandardApplets/grabber_basis/RSFx4/RSWindow.h"

#include <algorithm>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "fabrix/parameter_ids.h"

const std::array<RSWindow::Side, 4> RSWindow::kSides{
    {
     {FG_WIDTH, &RSWindow::mWidth, &RSWindow::mWriteReg_AreaWidth, &Fg_StdMaster::getDivFactor, 1},
     {FG_HEIGHT, &RSWindow::mHeight, &RSWindow::mWriteReg_AreaHeight, &Fg_StdMaster::getDivFactorHeight, 1},
     {FG_XOFFSET, &RSWindow::mXOffset, &RSWindow::mWriteReg_AreaXPos, &Fg_StdMaster::getDivFactor, 0},
     {FG_YOFFSET, &RSWindow::mYOffset, &RSWindow::mWriteReg_AreaYPos, &Fg_StdMaster::getDivFactorHeight, 0},
     }
};

RSWindow::RSWindow(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

void RSWindow::initRegisters() {
    const std::array rows{
        BlockRegisterRow{mWriteReg_AreaHeight, "AAAreaHeight", "ABAreaHeight"},
        BlockRegisterRow{mWriteReg_AreaWidth,  "AAAreaWidth",  "ABAreaWidth" },
        BlockRegisterRow{mWriteReg_AreaXPos,   "AAAreaXPos",   "ABAreaXPos"  },
        BlockRegisterRow{mWriteReg_AreaYPos,   "AAAreaYPos",   "ABAreaYPos"  },
    };
    initBlockRegisters(rows);
}

const RSWindow::Side* RSWindow::sideOf(int id) {
    const auto* found = std::find_if(kSides.begin(), kSides.end(), [id](const Side& side) { return side.id == id; });
    return found == kSides.end() ? nullptr : found;
}

int RSWindow::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const Side* side = sideOf(parameter == FG_FORMAT ? FG_WIDTH : parameter);
    if (side == nullptr) return FG_INVALID_ARGUMENT;
    return writeForPorts(port, this->*side->reg, [&](unsigned p) {
        const auto unit = static_cast<unsigned>((mFg_Base->*side->unit)(static_cast<int>(p)));
        return (this->*side->cache)[p] / unit - side->subtrahend;
    });
}

int RSWindow::updateAllParameters(unsigned int port) {
    for (const Side& side : kSides) {
        if (const int failed = updateParameter(port, side.id); failed != FG_OK) return failed;
    }
    return FG_OK;
}
