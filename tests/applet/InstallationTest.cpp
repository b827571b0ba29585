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
        const AppletFunctions functions(applet);
        const int hardware = functions.SHW_OpenLib();
        return {hardware, functions.HAPRT_OpenLib()};
    }

    const std::pair<int, int> kLoaded{0, 0};
    const std::pair<int, int> kNotFound{-101, -1};
    const Variable mDirectory{"TAVODIR5", nullptr};
    const Variable mDirectory32{"TAVODIR5_32", nullptr};
    Installation tree;
};

TEST_F(InstallationTest, EveryMarkerFolderIsFoundWhateverItsLetterCase) {
    for (const char* place :
         {"a/Hardware Applets/fabrixIV/libQuillon.so", "b/HARDWARE applets/libQuillon.so", "c/bin/libQuillon.so",
          "d/Dll/x/y/libQuillon.so", "e/LIB64/libQuillon.so", "f/lib/libQuillon.so", "lib/g/bin/libQuillon.so"}) {
        const fs::path applet = tree.addApplet(place);
        EXPECT_EQ(load(applet), kNotFound) << place;
        tree.addStubs(place[0] == 'l' ? "lib/g" : std::string(1, place[0]));
        EXPECT_EQ(load(applet), kLoaded) << place;
    }
}

TEST_F(InstallationTest, OutsideOfAnInstallationTheEnvironmentDecides) {
    const fs::path applet = tree.addApplet("elsewhere/libQuillon.so");
    tree.addStubs("good");
    const std::string good = (tree.root() / "good").string();
    EXPECT_EQ(load(applet), kNotFound);
    mDirectory.set((good + "///").c_str());
    EXPECT_EQ(load(applet), kLoaded);
    mDirectory32.set("");
    EXPECT_EQ(load(applet), kNotFound) << "a defined but empty TAVODIR5_32 beats TAVODIR5";
    mDirectory.set("/nonexistent");
    mDirectory32.set(good.c_str());
    EXPECT_EQ(load(applet), kLoaded);
    EXPECT_EQ(load(tree.addApplet("empty/lib/libQuillon.so")), kNotFound) << "the own path comes first";
}

TEST_F(InstallationTest, DirectoryOnceFoundServesBothFamiliesAndStays) {
    const Library applet(tree.addApplet("elsewhere/libQuillon.so"));
    const AppletFunctions functions(applet);
    EXPECT_EQ(functions.SHW_OpenLib(), -101);
    tree.addStub("stub_tavo_hw", "tavo_hw", "first");
    tree.addStub("stub_haprt", "haprt", "second");
    mDirectory.set((tree.root() / "first").c_str());
    EXPECT_EQ(functions.SHW_OpenLib(), 0) << "sought again, because there was none";
    mDirectory.set((tree.root() / "second").c_str());
    EXPECT_EQ(functions.HAPRT_OpenLib(), -1);
    tree.addStub("stub_haprt", "haprt", "first");
    EXPECT_EQ(functions.HAPRT_OpenLib(), 0);
}

TEST_F(InstallationTest, PathIsTheOneUnderWhichTheAppletWasOpened) {
    const fs::path real = tree.addApplet("real/libQuillon.so");
    tree.addStubs();
    fs::create_directories(tree.root() / "bin");
    fs::create_symlink(real, tree.root() / "bin" / "libQuillon.so");
    EXPECT_EQ(load(tree.root() / "bin" / "libQuillon.so"), kLoaded) << "links are not resolved";

    const fs::path former = fs::current_path();
    fs::current_path(tree.addApplet("other/lib/libQuillon.so").parent_path().parent_path());
    EXPECT_EQ(load("lib/libQuillon.so"), kNotFound);
    tree.addStubs("other");
    EXPECT_EQ(load("lib/libQuillon.so"), kLoaded);
    fs::current_path("lib");
    EXPECT_EQ(load("./libQuillon.so"), kNotFound) << "only folders of the opened path count";
    fs::current_path(former);
}

TEST_F(InstallationTest, LongestPathIsTakenAndALongerOneFallsBack) {
    const std::string stub = (tree.root() / "good").string();
    tree.addStubs("good");
    std::string folders = tree.root().string() + "/lib";
    while (folders.size() + 101 < 900) folders += "/" + std::string(100, 'x');
    for (const auto& [length, expected] : {
             std::pair{size_t{1023}, kNotFound},
             {size_t{1024}, kLoaded  }
    }) {
        const std::string path = folders + "/" + std::string(length - folders.size() - 1, 'q');
        mDirectory.set(stub.c_str());
        const fs::path place = fs::path(path).lexically_relative(tree.root());
        EXPECT_EQ(load(tree.addApplet(place)), expected) << length;
    }
    // The composed path of a library may be longer than that of the applet.
    const std::string deep = "deep" + std::string("/" + std::string(200, 'y') + "/" + std::string(200, 'y'));
    tree.addStubs(deep);
    mDirectory.set((tree.root() / deep).c_str());
    EXPECT_EQ(load(tree.addApplet("elsewhere/libQuillon.so")), kLoaded);
}

TEST_F(InstallationTest, LibraryWithAnUndefinedSymbolDoesNotOpen) {
    const fs::path applet = tree.addApplet();
    tree.addStub("stub_undefined", "tavo_hw");
    tree.addStub("stub_haprt", "haprt");
    EXPECT_EQ(load(applet), (std::pair{-101, 0}));
    tree.copy(kStagedApplet.parent_path() / "libQuillon.so", "lib/libhaprt.so");
    EXPECT_EQ(load(applet).second, 0) << "any library opens; it need not have the operations";
}

TEST_F(InstallationTest, MissingOperationsLeaveTheOthersAtWork) {
    const Library applet(tree.addApplet());
    const AppletFunctions functions(applet);
    const Stub stub(tree.addStub("stub_without_stop", "tavo_hw"));
    EXPECT_EQ(functions.SHW_OpenLib(), 0);
    stub.answer("TavoRegisterWrite", 77);
    EXPECT_EQ(applet.function<decltype(TavoRegisterWrite)>("TavoRegisterWrite")(device(), 1, 2), 77);
    EXPECT_EQ(applet.function<decltype(TavoDmaStop)>("TavoDmaStop")(device(), 0, 0, 0), -6);
}

TEST_F(InstallationTest, MissingSentinelLeavesTheOthersAtWorkToo) {
    const Library applet(tree.addApplet());
    const AppletFunctions functions(applet);
    const Stub stub(tree.addStub("stub_without_read", "tavo_hw"));
    const auto write = applet.function<decltype(TavoRegisterWrite)>("TavoRegisterWrite");
    const auto read = applet.function<decltype(TavoRegisterRead)>("TavoRegisterRead");
    stub.answer("TavoRegisterWrite", 77);
    uint64_t value = 5;
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(write(device(), 1, 2), 77);
        EXPECT_EQ(read(device(), 1, &value), -6);
    }
    EXPECT_EQ(value, 5U);
    EXPECT_EQ(functions.SHW_OpenLib(), 0);
}

TEST_F(InstallationTest, TwoCopiesKeepTheirOwnState) {
    Installation otherTree;
    tree.addStubs();
    otherTree.addStubs();
    const Library first(tree.addApplet());
    const Library second(otherTree.addApplet());
    const Stub firstBoard(tree.root() / "lib/libtavo_hw.so");
    const Stub secondBoard(otherTree.root() / "lib/libtavo_hw.so");
    firstBoard.answer("TavoGetCameraStatusExtended", 1);
    secondBoard.answer("TavoGetCameraStatusExtended", 2);
    const auto firstStatus = first.function<decltype(TavoGetCameraStatusExtended)>("TavoGetCameraStatusExtended");
    const auto secondStatus = second.function<decltype(TavoGetCameraStatusExtended)>("TavoGetCameraStatusExtended");
    EXPECT_EQ(firstStatus(device(), 0), 1);
    EXPECT_EQ(secondStatus(device(), 0), 2);

    int err = -1;
    const AppletFunctions one(first);
    const AppletFunctions other(second);
    Fg_Struct a{one.Std_entry(device(0xA), &err, 0)};
    EXPECT_EQ(err, 0);
    Fg_Struct b{other.Std_entry(device(0xB), &err, 0)};
    EXPECT_EQ(err, 0);
    FgDevice* known = nullptr;
    EXPECT_EQ(one.Info(GET_INFO_DEVICE_HANDLE, 0, 0, &known, nullptr), 0);
    EXPECT_EQ(known, device(0xA));
    EXPECT_EQ(other.Info(GET_INFO_DEVICE_HANDLE, 0, 0, &known, nullptr), 0);
    EXPECT_EQ(known, device(0xB));
    EXPECT_EQ(one.Fg_FreeGrabber(&a), 0);
    EXPECT_EQ(other.Fg_FreeGrabber(&b), 0);
}

TEST_F(InstallationTest, OpeningWithoutLibrariesIsRefusedAndLeavesNothing) {
    const fs::path path = tree.addApplet();
    const Library applet(path);
    const AppletFunctions functions(applet);
    for (int round = 0; round < 20; ++round) {
        int err = 0;
        EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
        EXPECT_EQ(err, -6);
    }
    // The applet runtime library alone: the design is loaded, the configuration fails, the design goes.
    const Stub runtime(tree.addStub("stub_haprt", "haprt"));
    runtime.answer("HapLoadDesignFromBuffer", 0x2002);
    int err = 0;
    EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    const auto calls = runtime.takeCalls();
    EXPECT_THAT(calls.back(), "HapUnloadHapFile 0x2002");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), calls.back()), 1);
    // Now the hardware-access library as well, which first refuses the configuration.
    const Stub board(tree.addStub("stub_tavo_hw", "tavo_hw"));
    board.answer("TavoConfigureFpga", -4321);
    EXPECT_EQ(functions.Std_entry(device(), &err, 0), nullptr);
    EXPECT_EQ(err, -4321);
    EXPECT_THAT(runtime.takeCalls().back(), "HapUnloadHapFile 0x2002");
    EXPECT_EQ(functions.Std_entry(nullptr, &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    EXPECT_THAT(board.takeCalls(), testing::ElementsAre("TavoConfigureFpga 0x1001 0x2002"));
    board.answer("TavoConfigureFpga", 0);
    Fg_Struct grabber{functions.Std_entry(device(), &err, 0)};
    EXPECT_EQ(err, 0);
    EXPECT_NE(grabber.Master, nullptr);
    functions.Fg_FreeGrabber(&grabber);
}

TEST_F(InstallationTest, MissingRuntimeLibraryLeavesANullDesignToTheConfiguration) {
    const Library applet(tree.addApplet());
    const AppletFunctions functions(applet);
    const Stub board(tree.addStub("stub_tavo_hw", "tavo_hw"));
    int err = -1;
    Fg_Struct grabber{functions.Std_entry(device(), &err, 0)};
    EXPECT_EQ(err, 0);
    ASSERT_NE(grabber.Master, nullptr);
    EXPECT_EQ(board.takeCalls().front(), "TavoConfigureFpga 0x1001 null");
    functions.Fg_FreeGrabber(&grabber);
}

}  // namespace
