// What TAVO_SIM_FAULT does to the exported operations of the two runtime libraries.
#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"

namespace {

/// Calls \p name of \p library with \p first and else null, and expects the planned code -77.
template <class Result, class First, class... Others>
void expectPlanned(const Library& library, const char* name, Result (*)(First, Others...), First first) {
    const Result result = library.function<Result(First, Others...)>(name)(first, Others{}...);
    if constexpr (std::is_pointer_v<Result> || std::is_unsigned_v<Result>) {
        EXPECT_EQ(result, Result{}) << name;
    } else {
        EXPECT_EQ(result, -77) << name;
    }
}

TEST(FaultMenuTest, EveryOperationFailsAsPlanned) {
    // In a folder of their own, so that they read the environment of this test.
    Installation folder;
    const Library hardware(folder.copy(kStage / "lib/libtavo_hw.so", "lib/libtavo_hw.so"));
    const Library runtime(folder.copy(kStage / "lib/libhaprt.so", "lib/libhaprt.so"));
    const Variable fault("TAVO_SIM_FAULT", nullptr);
    const auto expectPlannedHardware = [&](auto* type, const std::string& name) {
        fault.set((name + ":1:-77").c_str());
        // The board that comes next reads it.
        EXPECT_EQ(hardware.function<decltype(tavo_sim_close)>("tavo_sim_close")(device()), 0);
        expectPlanned(hardware, name.c_str(), type, device());
        EXPECT_EQ(hardware.function<decltype(tavo_sim_last_error)>("tavo_sim_last_error")(),
                  name + ": a planned fault");
    };
#define FABRIX_TAVO(result, name, parameters, arguments) \
    expectPlannedHardware(static_cast<decltype(::name)*>(nullptr), #name);
#include "fabrix/runtime_operations.inc"
    expectPlannedHardware(static_cast<decltype(::TavoUnlockBuffer)*>(nullptr), "TavoUnlockBuffer");

    std::string plans = "HapGetRegisterInitValue:1:-77,HapGetNrOfUserInfos:1:-77";
#define FABRIX_HAP(result, name, parameters, arguments) plans += "," #name ":1:-77";
#include "fabrix/runtime_operations.inc"
    fault.set(plans.c_str());  // which the runtime library reads at its first call
#define FABRIX_HAP(result, name, parameters, arguments) \
    expectPlanned(runtime, #name, static_cast<decltype(::name)*>(nullptr), {});
#include "fabrix/runtime_operations.inc"
    for (const char* name : {"HapGetRegisterInitValue", "HapGetNrOfUserInfos"}) {
        expectPlanned(runtime, name, static_cast<decltype(::HapGetNrOfUserInfos)*>(nullptr), uintptr_t{0});
    }
}

}  // namespace
