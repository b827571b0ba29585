#include "BenchApplet.h"

namespace bench {

BenchApplet::BenchApplet(const std::string& path) : mHandle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (mHandle == nullptr) throw std::runtime_error(path + " does not open: " + dlerror());
}

const BenchApplet& boardApplet() {
    static const BenchApplet applet(QUILLON_STAGE "/Hardware Applets/fabrixIV/libQuillon.so");
    return applet;
}

const BenchApplet& emptyApplet() {
    static const BenchApplet applet(QUILLON_FLOOR "/Hardware Applets/fabrixIV/libQuillon.so");
    return applet;
}

BenchGrabber::BenchGrabber(const BenchApplet& applet) : mApplet(applet) {
    int code = 0;
    mHandle.Master = applet.function<decltype(&::Std_entry)>("Std_entry")(device(), &code, 0);
    if (mHandle.Master == nullptr) throw std::runtime_error("the board does not open: code " + std::to_string(code));
}

BenchGrabber::~BenchGrabber() { mApplet.function<decltype(&::Fg_FreeGrabber)>("Fg_FreeGrabber")(&mHandle); }

FgDevice* BenchGrabber::device() { return reinterpret_cast<FgDevice*>(mToken.data()); }

}  // namespace bench
