#include <cstdlib>

#include "StandardApplets/Quillon/AppletConstants.h"
#include "StandardApplets/Quillon/AppletInfo.h"
#include "StandardApplets/Quillon/data/applet_data.h"
#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Guard.h"
#include "StandardApplets/grabber_basis/grabber_basis.h"
#include "fabrix/applet.h"
#include "fabrix/haprt.h"

namespace {

constexpr const char* kExternalDesign = "Quilmo.stdhap";
constexpr int kLoadFlag = 1;

/// \return whether the environment asks for the external design file
bool HaveToLoadExternalHAP() { return std::getenv("__TAVO_FORCE_EXTERNAL_HAP") != nullptr; }

/// \return the external design where it is asked for and can be loaded, else the embedded one; null when that fails
fpga_design* loadDesign() {
    if (HaveToLoadExternalHAP()) {
        const int boardType = Info(GET_BOARD_TYPE, 0, 0, nullptr, nullptr);
        if (fpga_design* design = HapLoadHapFileWithType(kExternalDesign, boardType, kLoadFlag); design != nullptr) {
            return design;
        }
    }
    return HapLoadDesignFromBuffer(rawHapData, rawHapDataSize, kLoadFlag);
}

}  // namespace

extern "C" Fg_Master* Std_entry(FgDevice* hwhandle, int* err, int isSlave) {
    return guarded([&]() -> Fg_Master* {
        int unasked = FG_OK;
        int& result = err != nullptr ? *err : unasked;
        setInfoDeviceHandle(hwhandle);
        if (isSlave != 0) {
            result = FG_INVALID_ARGUMENT;
            return nullptr;
        }
        fpga_design* design = loadDesign();
        setInfoDesignHandle(design);
        return grabberAlloc("dummy", hwhandle, design, &result, nullptr, false, false);
    });
}

int initBoardSettings(Fg_FabrixBoard* board) {
    board->setAppletID(kAppletId);
    board->setAppletVersion(kAppletVersion);
    board->setAppletRevision(kAppletRevision);
    board->setIsDualDesign(false);
    return FG_OK;
}
