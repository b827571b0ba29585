// Configuration files of any content: loading answers 0 or a refusal, and the grabber can save and load afterwards.
#include <algorithm>
#include <string>

#include "fabrix/applet.h"
#include "fuzz/Scratch.h"
#include "tests/faults/FaultyRuntime.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FaultyRuntime runtime;
    Fg_Struct grabber{};
    int err = -1;
    grabber.Master = Std_entry(FaultyRuntime::device(), &err, 0);
    expect(err == 0, "the grabber opens");
    std::string text(reinterpret_cast<const char*>(data), size);
    std::replace(text.begin(), text.end(), '/', '_');
    Scratch::write("fuzzed.mcf", reinterpret_cast<const uint8_t*>(text.data()), text.size());
    const int loaded = Fg_loadConfig(&grabber, "fuzzed.mcf");
    expect(loaded == FG_OK || loaded == FG_FILE_REJECTED, "a load answers 0 or -5000");
    if (loaded == FG_OK) {
        expect(Fg_saveConfig(&grabber, "again.mcf") == FG_OK, "what was loaded can be saved");
        expect(Fg_loadConfig(&grabber, "again.mcf") == FG_OK, "what was saved can be loaded");
    }
    Fg_FreeGrabber(&grabber);
    expect(runtime.designsOpen() == 0, "the design is unloaded");
    return 0;
}
