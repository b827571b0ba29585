// Configuration files of any content: loading answers 0 or a refusal, and what was loaded can be saved and loaded
// again. The grabber has one parameter of each type, so that time goes into files; the modules' own values beyond
// every limit belong to CallsFuzz.
#include <memory>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "fabrix/applet.h"
#include "fuzz/Scratch.h"
#include "tests/core/AllTypes.h"
#include "tests/faults/FaultyRuntime.h"

namespace {

/// A grabber without a design. What a load changes is put back for the next input.
class Grabber {
public:
    Grabber() {
        mHandle.Master = new Fg_StdMaster(std::make_unique<Fg_FabrixBoard>(nullptr, FaultyRuntime::device(), nullptr));
        mMaster = static_cast<Fg_StdMaster*>(mHandle.Master);
        mMaster->setCameraType("Quillon8");
        mModule = new AllTypes(mMaster);
        mMaster->getHeader()->addModule(mModule, 0);
        for (const unsigned port : {0u, 1u}) mModule->addStandardPS(port, true);
    }
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;
    ~Grabber() { Fg_FreeGrabber(&mHandle); }

    int load(const char* name) { return Fg_loadConfig(&mHandle, name); }
    int save(const char* name) { return Fg_saveConfig(&mHandle, name); }
    void reset() {
        mMaster->setActivePort(0);
        mModule->integers = {};
        mModule->doubles = {};
        mModule->texts = {};
        mModule->loadedKeys.clear();
        mModule->updatedPorts.clear();
    }

private:
    Fg_Struct mHandle{};
    Fg_StdMaster* mMaster;
    AllTypes* mModule;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FaultyRuntime runtime;
    static Grabber grabber;
    grabber.reset();
    Scratch::write("fuzzed.mcf", data, size);
    const int loaded = grabber.load("fuzzed.mcf");
    expect(loaded == FG_OK || loaded == FG_FILE_REJECTED, "a load answers 0 or -5000");
    if (loaded == FG_OK) {
        expect(grabber.save("again.mcf") == FG_OK, "what was loaded can be saved");
        expect(grabber.load("again.mcf") == FG_OK, "what was saved can be loaded");
    }
    return 0;
}
