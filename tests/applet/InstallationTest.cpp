// How the applet finds and opens the two runtime libraries, seen from the outside. Every test works on copies.
#include <algorithm>

#include "tests/applet/AppletLibrary.h"

namespace {

namespace fs = std::filesystem;

class InstallationTest : public testing::Test {
protected:
    /// \return the codes of both loaders of the applet at \p path
    static std::pair<int, int> load(const fs::path& path) {
        const Library applet(path);
        const AppletFunctions functions{applet};
        const int hardware = functions.SHW_OpenLib();
        return {hardware, functions.HAPRT_OpenLib()};
    }

    const std::pair<int, int> kLoaded{0, 0};
    const std::pair<int, int> kNotFound{-101, -1};
    const Variable mDirectory{"TAVODIR5", nullptr};
    const Variable mDirectory32{"TAVODIR5_32", nullptr};
    Installation tree;
};

TEST_F(InstallationTest, TheOwnPathDecidesAndElseTheEnvironment) {
    const fs::path inside = tree.addApplet("a/HARDWARE applets/fabrixIV/libQuillon.so");
    const fs::path outside = tree.addApplet("elsewhere/libQuillon.so");
    tree.addStubs("good");
    mDirectory.set((tree.root() / "good///").c_str());
    EXPECT_EQ(load(outside), kLoaded);
    EXPECT_EQ(load(inside), kNotFound);
    tree.addStubs("a");
    mDirectory32.set("");
    EXPECT_EQ(load(inside), kLoaded);
    EXPECT_EQ(load(outside), kNotFound) << "a defined but empty TAVODIR5_32 beats TAVODIR5";
}

TEST_F(InstallationTest, DirectoryOnceFoundServesBothFamiliesAndStays) {
    const Library applet(tree.addApplet("elsewhere/libQuillon.so"));
    const AppletFunctions functions{applet};
    EXPECT_EQ(functions.SHW_OpenLib(), -101);
    tree.addStub("stub", "tavo_hw", "first");
    tree.addStub("stub", "haprt", "second");
    mDirectory.set((tree.root() / "first").c_str());
    EXPECT_EQ(functions.SHW_OpenLib(), 0) << "sought again, because there was none";
    mDirectory.set((tree.root() / "second").c_str());
    EXPECT_EQ(functions.HAPRT_OpenLib(), -1);
    tree.addStub("stub", "haprt", "first");
    EXPECT_EQ(functions.HAPRT_OpenLib(), 0);
}

TEST_F(InstallationTest, PathIsTheOneUnderWhichTheAppletWasOpened) {
    const fs::path real = tree.addApplet("real/libQuillon.so");
    tree.addStubs();
    fs::create_directories(tree.root() / "bin");
    fs::create_symlink(real, tree.root() / "bin" / "libQuillon.so");
    EXPECT_EQ(load(tree.root() / "bin" / "libQuillon.so"), kLoaded) << "links are not resolved";
    const fs::path former = fs::current_path();
    fs::current_path(tree.root() / "bin");
    EXPECT_EQ(load("./libQuillon.so"), kNotFound) << "only folders of the opened path count";
    fs::current_path(former);
}

TEST_F(InstallationTest, LibraryWithAnUndefinedSymbolDoesNotOpen) {
    tree.addStub("stub_undefined", "tavo_hw");
    tree.addStub("stub", "haprt");
    EXPECT_EQ(load(tree.addApplet()), (std::pair{-101, 0}));
}

TEST_F(InstallationTest, TwoCopiesKeepTheirOwnState) {
    Installation otherTree;
    for (Installation* place : {&tree, &otherTree}) place->addStubs();
    const Library first(tree.addApplet());
    const Library second(otherTree.addApplet());
    const Stub otherBoard(otherTree.root() / "lib/libtavo_hw.so");
    otherBoard.answer("TavoConfigureFpga", -2);
    const AppletFunctions one{first};
    const AppletFunctions other{second};
    int err = -1;
    Fg_Struct grabber{one.Std_entry(device(0xA), &err, 0)};
    EXPECT_EQ(err, 0);
    EXPECT_EQ(other.Std_entry(device(0xB), &err, 0), nullptr);
    EXPECT_EQ(err, -2);
    const auto deviceOf = [](const AppletFunctions& functions) {
        FgDevice* known = nullptr;
        EXPECT_EQ(functions.Info(GET_INFO_DEVICE_HANDLE, 0, 0, &known, nullptr), 0);
        return known;
    };
    EXPECT_EQ(deviceOf(one), device(0xA));
    EXPECT_EQ(deviceOf(other), device(0xB));
    EXPECT_EQ(one.Fg_FreeGrabber(&grabber), 0);
}

TEST_F(InstallationTest, OpeningNeedsTheHardwareLibraryAndUnloadsTheDesignWhenRefused) {
    const Library applet(tree.addApplet());
    const AppletFunctions functions{applet};
    int err = 0;
    EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    // The applet runtime library alone: the design is loaded, the configuration fails, the design goes.
    const Stub runtime(tree.addStub("stub", "haprt"));
    runtime.answer("HapLoadDesignFromBuffer", 0x2002);
    EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    const auto calls = runtime.takeCalls();
    EXPECT_EQ(calls.back(), "HapUnloadHapFile 0x2002");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), calls.back()), 1);
    // Now the hardware-access library as well.
    const Stub board(tree.addStub("stub", "tavo_hw"));
    EXPECT_EQ(functions.Std_entry(nullptr, &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    EXPECT_EQ(functions.Std_entry(device(), &err, 1), nullptr);
    EXPECT_EQ(err, -2070) << "there is no slave";
    board.answer("TavoConfigureFpga", -4321);
    EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
    EXPECT_EQ(err, -4321);
    EXPECT_EQ(runtime.takeCalls().back(), "HapUnloadHapFile 0x2002");
    EXPECT_THAT(board.takeCalls(), testing::ElementsAre("TavoConfigureFpga 0x1001 0x2002"));
}

TEST_F(InstallationTest, TheDesignIsTheEmbeddedOneUnlessAFileIsAskedForAndLoads) {
    const Library applet(tree.addApplet());
    const AppletFunctions functions{applet};
    const Stub board(tree.addStub("stub", "tavo_hw"));
    const auto openedDesign = [&] {
        int err = -1;
        Fg_Struct grabber{functions.Std_entry(device(), &err, 0)};
        EXPECT_EQ(err, 0);
        functions.Fg_FreeGrabber(&grabber);
        return board.takeCalls().front();
    };
    EXPECT_EQ(openedDesign(), "TavoConfigureFpga 0x1001 0") << "there is no runtime library";
    const Stub runtime(tree.addStub("stub", "haprt"));
    runtime.answer("HapLoadDesignFromBuffer", 0x2002);
    const Variable force("__TAVO_FORCE_EXTERNAL_HAP", "");
    EXPECT_EQ(openedDesign(), "TavoConfigureFpga 0x1001 0x2002");
    EXPECT_EQ(runtime.takeCalls().front(), "HapLoadHapFileWithType Quilmo.stdhap 2626 1");
    runtime.answer("HapLoadHapFileWithType", 0x3003);
    EXPECT_EQ(openedDesign(), "TavoConfigureFpga 0x1001 0x3003");
    force.set(nullptr);
    EXPECT_EQ(openedDesign(), "TavoConfigureFpga 0x1001 0x2002");
}

}  // namespace
