// The applet's make-up: one gray 8-bit area-scan camera on a Camera Link port in the Full configuration.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>

#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/PSAreaTrigger.h"
#include "StandardApplets/grabber_basis/PSFx4/PSCCSignal.h"
#include "StandardApplets/grabber_basis/PSFx4/PSCamPort.h"
#include "StandardApplets/grabber_basis/PSFx4/PSDirectReg.h"
#include "StandardApplets/grabber_basis/PSFx4/PSGenerator.h"
#include "StandardApplets/grabber_basis/PSFx4/PSImageSelector.h"
#include "StandardApplets/grabber_basis/PSFx4/PSKneeLut.h"
#include "StandardApplets/grabber_basis/PSFx4/PSSensorReadout8Tab.h"
#include "StandardApplets/grabber_basis/PSFx4/PSWindow.h"
#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSControl.h"
#include "StandardApplets/grabber_basis/grabber_basis.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"

namespace {

constexpr int kAllPorts = -1;
constexpr int kLineAlignment = 32;
constexpr int kCameraCategory = 30;
constexpr int kGray = 0;
constexpr int kAreaScan = 1;
constexpr int kStdWidth = 1024;
constexpr int kStdHeight = 1024;
constexpr int kStepFromCategory = -1;
constexpr int kTaps = 8;
constexpr std::array<std::string_view, 4> kYes{"yes", "true", "on", "1"};

void describeCamera(Fg_StdMaster& master) {
    master.setIsMedium(true);
    master.setIsFull(true);
    master.setLineAlignment(kLineAlignment);
    master.setCameraType("Quillon8");
    master.setCameraVersion("1.1");
    for (int port = 0; isPort(port); ++port) master.setIsCameraColor(kGray, port);
    master.setCameraCategory(kCameraCategory, 0);
    for (int port = 0; isPort(port); ++port) master.setIsArea(kAreaScan, port);
}

template <class Module, class... Arguments>
void addModule(Fg_StdMaster& master, Arguments... arguments) {
    master.getHeader()->addModule(std::make_unique<Module>(&master, arguments...).release(), 0);
}

/// \return whether the environment asks for a parameter for every register of the design
bool wantsDirectRegisters() {
    const char* value = std::getenv("TAVO_ENABLE_DRA");
    if (value == nullptr) return false;
    std::string answer = value;
    for (char& c : answer) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return std::find(kYes.begin(), kYes.end(), answer) != kYes.end();
}

void addModules(Fg_StdMaster& master) {
    addModule<PSGenerator>(master);
    addModule<PSWindow>(master, INT32_MAX, kStdWidth, kStdHeight, kStepFromCategory);
    const bool isArea = master.getIsArea(0) == kAreaScan;
    addModule<PSCamPort>(master, isArea, /*isCamPortMedium=*/true, /*isCamPortColor=*/false,
                         /*isCamPortBayer=*/false, /*isCamPortFull=*/true);
    addModule<PSSensorReadout8Tab>(master, kTaps);
    addModule<PSAreaTrigger>(master);
    addModule<PSCCSignal>(master);
    addModule<PSKneeLut>(master);
    addModule<PSImageSelector>(master);
    if (wantsDirectRegisters()) addModule<PSDirectReg>(master);
}

void takeFormats(Fg_StdMaster& master) {
    for (int port = 0; isPort(port); ++port) {
        int format = 0;
        std::ignore = master.getHeader()->getParameterById(FG_FORMAT, &format, port);
        master.setActiveFormat(port, format);
    }
}

}  // namespace

int initMaster(Fg_StdMaster* fgMaster) {
    Fx3ParameterHeader& registry = *fgMaster->getHeader();
    describeCamera(*fgMaster);
    addModules(*fgMaster);
    registry.updateAllDescriptions(true, kAllPorts);
    takeFormats(*fgMaster);
    registry.initAllRegisterWithCacheValue();
    // Registers that a design lacks do not refuse the grabber. Port 0 comes last: the one path ends in its state.
    std::ignore = registry.updateAllParametersPS(1);
    std::ignore = registry.updateAllParametersPS(0);
    RSControl& control = *fgMaster->getController();
    std::ignore = control.enableSDRAM(0);
    std::ignore = control.writeReset(0);
    std::ignore = control.writeReset(1);
    return FG_OK;
}
