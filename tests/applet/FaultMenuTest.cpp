// What TAVO_SIM_FAULT and the control interface do to the exported operations of the two runtime libraries.
#include <array>
#include <fstream>
#include <functional>
#include <iterator>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"

namespace {

constexpr int kPlanned = -77;
constexpr int kBadSetting = -9006;

constexpr std::array kNames{
#define FABRIX_TAVO(result, name, parameters, arguments) #name,
#define FABRIX_TAVO_OPAQUE(result, name) #name,
#define FABRIX_TAVO_NO_DEVICE(result, name) #name,
#define FABRIX_HAP(result, name, parameters, arguments) #name,
#define FABRIX_HAP_OPAQUE(result, name) #name,
#include "fabrix/runtime_operations.inc"
};

/// Both runtime libraries in a folder of their own, so that they read the environment of this test.
class FaultMenuTest : public testing::Test {
protected:
    template <class Function>
    Function* hardware(const char* name) const {
        return mHardware.function<Function>(name);
    }
    template <class Function>
    Function* runtime(const char* name) const {
        return mRuntime.function<Function>(name);
    }
    static bool has(const std::filesystem::path& path, const char* name) {
        void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        const bool isThere = dlsym(library, name) != nullptr;
        dlclose(library);
        return isThere;
    }
    /// Plans \p text for the boards that are made from now on.
    void plan(const std::string& text) {
        mFault.set(text.c_str());
        EXPECT_EQ(hardware<decltype(tavo_sim_close)>("tavo_sim_close")(device()), 0);
    }
    /// Calls an operation with null for everything but the device.
    template <class Result, class... Others>
    static Result callWith(Result (*operation)(FgDevice*, Others...)) {
        return operation(device(), Others{}...);
    }
    template <class Function>
    void expectPlanned(const char* name) {
        SCOPED_TRACE(name);
        plan(std::string(name) + ":1:-77");
        const auto result = callWith(hardware<Function>(name));
        using Result = std::remove_const_t<decltype(result)>;
        if constexpr (std::is_pointer_v<Result> || std::is_unsigned_v<Result>) {
            EXPECT_EQ(result, Result{});
        } else {
            EXPECT_EQ(result, kPlanned);
        }
        EXPECT_EQ(hardware<decltype(tavo_sim_last_error)>("tavo_sim_last_error")(),
                  std::string(name) + ": a planned fault");
    }

    Installation mFolder;
    const std::filesystem::path mHardwarePath = mFolder.copy(kStage / "lib/libtavo_hw.so", "lib/libtavo_hw.so");
    const std::filesystem::path mRuntimePath = mFolder.copy(kStage / "lib/libhaprt.so", "lib/libhaprt.so");
    const Variable mFault{"TAVO_SIM_FAULT", nullptr};
    const Library mHardware{mHardwarePath};
    const Library mRuntime{mRuntimePath};
};

TEST_F(FaultMenuTest, OffersWhatTheLibrariesHaveAndNothingElse) {
    int offered = 0;
    for (const char* name : kNames) {
        SCOPED_TRACE(name);
        plan(std::string(name) + ":2:-77");
        const bool isRefused =
            hardware<decltype(TavoConfigureFpga)>("TavoConfigureFpga")(device(), nullptr) == kBadSetting;
        EXPECT_EQ(!isRefused, has(mHardwarePath, name) || has(mRuntimePath, name));
        offered += isRefused ? 0 : 1;
    }
    EXPECT_EQ(offered, 35);
}

TEST_F(FaultMenuTest, EveryHardwareOperationFailsAsPlanned) {
#define FABRIX_TAVO(result, name, parameters, arguments) expectPlanned<decltype(::name)>(#name);
#include "fabrix/runtime_operations.inc"
    expectPlanned<decltype(::TavoUnlockBuffer)>("TavoUnlockBuffer");
}

TEST_F(FaultMenuTest, EveryRuntimeOperationFailsAsPlannedAtItsSecondCall) {
    const std::string file = (mFolder.root() / "Quillon.stdhap").string();
    const std::string command =
        "'" QUILLON_DESIGNC "' '" QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon.design' '" + file + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    std::ifstream stream(file, std::ios::binary);
    const std::string image{std::istreambuf_iterator<char>(stream), {}};

    std::string plans;
    for (const char* name : kNames) {
        if (has(mRuntimePath, name)) plans += std::string(plans.empty() ? "" : ",") + name + ":2:-77";
    }
    mFault.set(plans.c_str());

    std::vector<fpga_design*> designs;
    const auto keep = [&](fpga_design* loaded) {
        if (loaded != nullptr) designs.push_back(loaded);
        return static_cast<intptr_t>(loaded != nullptr);
    };
    const auto unload = [&] {
        const int code = runtime<decltype(HapUnloadHapFile)>("HapUnloadHapFile")(designs.back());
        if (code == 0) designs.pop_back();
        return intptr_t{code} + 1;
    };
    const auto isText = [](const char* text) { return static_cast<intptr_t>(text != nullptr && *text != '\0'); };
    const auto number = [&] { return reinterpret_cast<uintptr_t>(designs.back()); };
    struct Row {
        const char* name;
        std::function<intptr_t(const char* name)> call;
        intptr_t failure;
    };
    // The last row unloads what the others need.
    const Row rows[]{
        {"HapLoadDesignFromBuffer",
         [&](auto* n) { return keep(runtime<decltype(HapLoadDesignFromBuffer)>(n)(image.data(), image.size(), 0)); },
         0                                                                                                                         },
        {"HapLoadHapFileWithType",
         [&](auto* n) { return keep(runtime<decltype(HapLoadHapFileWithType)>(n)(file.c_str(), 2626, 0)); },           0           },
        {"HapGetNrOfRegister",      [&](auto* n) { return runtime<decltype(HapGetNrOfRegister)>(n)(designs.back()); },
         kPlanned                                                                                                                  },
        {"HapGetRegisterName",
         [&](auto* n) { return isText(runtime<decltype(HapGetRegisterName)>(n)(designs.back(), 1)); },                 0           },
        {"HapGetRegisterDirection",
         [&](auto* n) { return runtime<decltype(HapGetRegisterDirection)>(n)(designs.back(), 1); },                    kPlanned    },
        {"HapGetRegisterByName",
         [&](auto* n) { return runtime<decltype(HapGetRegisterByName)>(n)(designs.back(), "AAReset"); },               kPlanned    },
        {"HapGetRegisterBitRange",
         [&](auto* n) { return runtime<decltype(HapGetRegisterBitRange)>(n)(designs.back(), 1); },                     kPlanned    },
        {"HapGetRegisterInitValue",
         [&](auto* n) { return 1 + runtime<decltype(HapGetRegisterInitValue)>(n)(number(), 1, 0, 0, 0, 0, 0, 0); },
         kPlanned + 1                                                                                                              },
        {"HapGetNrOfUserInfos",
         [&](auto* n) { return runtime<decltype(HapGetNrOfUserInfos)>(n)(number(), 0, 0, 0, 0, 0, 0, 0); },            kPlanned    },
        {"HapGetUserInfoByName",
         [&](auto* n) { return isText(runtime<decltype(HapGetUserInfoByName)>(n)(designs.back(), "DESIGN_NAME")); },   0           },
        {"HapUnloadHapFile",        [&](auto*) { return unload(); },                                                   kPlanned + 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_GT(row.call(row.name), 0);
        EXPECT_EQ(row.call(row.name), row.failure);
        plans.erase(plans.find(row.name), std::string(row.name).size());
    }
    EXPECT_EQ(unload(), 1) << "the third call goes on";
    EXPECT_THAT(plans, testing::Not(testing::HasSubstr("Hap"))) << "an operation of the library has no row";
}

}  // namespace
