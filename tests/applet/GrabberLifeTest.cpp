// The staged applet over the software board: opening, closing, ports, acquisition, designs from files.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"

namespace {

namespace fs = std::filesystem;

/// The staged applet and, in the board library that it opens, the control of the board.
class GrabberLifeTest : public testing::Test {
protected:
    GrabberLifeTest() {
        board<decltype(tavo_sim_camera_scene)>("tavo_sim_camera_scene")(device(), 64, 48);
        board<decltype(tavo_sim_mode)>("tavo_sim_mode")(device(), TAVO_SIM_FAST);
    }
    ~GrabberLifeTest() override {
        close();
        board<decltype(tavo_sim_close)>("tavo_sim_close")(device());
    }

    int open() {
        int err = -999;
        grabber.Master = mFunctions.Std_entry(device(), &err, 0);
        return err;
    }
    void close() {
        mFunctions.Fg_FreeGrabber(&grabber);
        grabber.Master = nullptr;
    }
    template <class Function>
    Function* board(const char* name) {
        return mBoard.function<Function>(name);
    }
    template <class Function>
    Function* applet(const char* name) {
        return mApplet.function<Function>(name);
    }
    int set(int id, int value, int port = 0) {
        return applet<decltype(Fg_setParameterWithType)>("Fg_setParameterWithType")(&grabber, id, &value, port,
                                                                                    FG_PARAM_TYPE_INT32_T);
    }
    int get(int id, int port = 0) {
        int value = -12345;
        EXPECT_EQ(applet<decltype(Fg_getParameterWithType)>("Fg_getParameterWithType")(&grabber, id, &value, port,
                                                                                       FG_PARAM_TYPE_INT32_T),
                  0);
        return value;
    }
    int lastError() { return applet<decltype(Fg_getLastErrorNumber)>("Fg_getLastErrorNumber")(&grabber); }
    std::string designName() {
        const char* name = applet<decltype(HapGetUserInfoByName)>("HapGetUserInfoByName")(design(), "DESIGN_NAME");
        return name == nullptr ? "" : name;
    }
    fpga_design* design() {
        fpga_design* handle = nullptr;
        mFunctions.Info(GET_INFO_DESIGN_HANDLE, 0, 0, &handle, nullptr);
        return handle;
    }

    Fg_Struct grabber{};

private:
    Library mApplet{kStagedApplet};
    AppletFunctions mFunctions{mApplet};
    Library mBoard{kStage / "lib" / "libtavo_hw.so"};
};

TEST_F(GrabberLifeTest, ThousandRoundsOfOpenAndClose) {
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(open(), 0) << round;
        ASSERT_NE(grabber.Master, nullptr);
        close();
        ASSERT_EQ(designName(), "") << "the design of round " << round << " is still loaded";
    }
}

TEST_F(GrabberLifeTest, RefusedOpensCanFollowEachOther) {
    const auto fail = board<decltype(tavo_sim_fail)>("tavo_sim_fail");
    for (int round = 0; round < 100; ++round) {
        ASSERT_EQ(fail(device(), "TavoConfigureFpga", 1, -55), 0);
        EXPECT_EQ(open(), -55);
        EXPECT_EQ(grabber.Master, nullptr);
        EXPECT_EQ(designName(), "");
        int err = 0;
        EXPECT_EQ(applet<decltype(Std_entry)>("Std_entry")(device(), &err, 1 + round), nullptr);
        EXPECT_EQ(err, -2070);
        EXPECT_EQ(applet<decltype(Std_entry)>("Std_entry")(nullptr, &err, 0), nullptr);
        EXPECT_EQ(err, -6);
    }
    EXPECT_EQ(open(), 0);
}

TEST_F(GrabberLifeTest, StopFromAnotherThreadEndsABlockedWait) {
    ASSERT_EQ(open(), 0);
    ASSERT_EQ(set(FG_WIDTH, 64), 0);
    ASSERT_EQ(set(FG_HEIGHT, 32), 0);
    std::vector<unsigned char> pixels(64 * 32);
    auto* const memory =
        board<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(device(), pixels.size(), 1);
    ASSERT_EQ(
        board<decltype(TavoAddUserBuffer)>("TavoAddUserBuffer")(device(), memory, pixels.data(), pixels.size(), 0), 0);
    const auto start = applet<decltype(Fg_AcquireEx)>("Fg_AcquireEx");
    const auto stop = applet<decltype(Fg_stopAcquireEx)>("Fg_stopAcquireEx");
    const auto wait = applet<decltype(Fg_getLastPicNumberBlockingEx)>("Fg_getLastPicNumberBlockingEx");
    ASSERT_EQ(start(&grabber, 0, 3, 1, memory), 0);
    EXPECT_EQ(set(FG_WIDTH, 128), -7090);
    EXPECT_GE(wait(&grabber, 3, 0, 10, memory), 3);
    EXPECT_EQ(stop(&grabber, 0, memory, 0), 0);
    // A camera that is not there brings no picture: only the stop can end this wait.
    board<decltype(tavo_sim_camera_link)>("tavo_sim_camera_link")(device(), 0);
    ASSERT_EQ(start(&grabber, 0, 3, 1, memory), 0);
    frameindex_t waited = 99;
    std::thread waiter([&] { waited = wait(&grabber, 3, 0, 60, memory); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(stop(&grabber, 0, memory, 0), 0);
    waiter.join();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    EXPECT_LE(waited, 0);
    EXPECT_EQ(board<decltype(TavoFreeVirtualUserBuffer)>("TavoFreeVirtualUserBuffer")(device(), memory), 0);
}

TEST_F(GrabberLifeTest, DisturbancesReachTheHost) {
    constexpr int kTimeOut = -9007;
    constexpr uint64_t kLastMicrosecondNs = 2'147'483'647'000;
    ASSERT_EQ(open(), 0);
    ASSERT_EQ(set(FG_WIDTH, 64), 0);
    ASSERT_EQ(set(FG_HEIGHT, 32), 0);
    std::vector<unsigned char> pixels(size_t{4} * 64 * 32);
    auto* const memory =
        board<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(device(), pixels.size(), 4);
    for (frameindex_t i = 0; i < 4; ++i) {
        ASSERT_EQ(board<decltype(TavoAddUserBuffer)>("TavoAddUserBuffer")(device(), memory,
                                                                          &pixels[size_t(i) * 64 * 32], 64 * 32, i),
                  0);
    }
    EXPECT_EQ(board<decltype(tavo_sim_first_tag)>("tavo_sim_first_tag")(device(), -1), -9006);
    EXPECT_EQ(board<decltype(tavo_sim_get_losses)>("tavo_sim_get_losses")(device(), nullptr), -9001);
    EXPECT_EQ(board<decltype(tavo_sim_first_tag)>("tavo_sim_first_tag")(device(), 2147483647), 0);
    EXPECT_EQ(board<decltype(tavo_sim_first_time_stamp)>("tavo_sim_first_time_stamp")(device(),
                                                                                      kLastMicrosecondNs - 15'000'000),
              0);
    EXPECT_EQ(board<decltype(tavo_sim_hold_dma)>("tavo_sim_hold_dma")(device(), 1), 0);
    const auto wait = applet<decltype(Fg_getLastPicNumberBlockingEx)>("Fg_getLastPicNumberBlockingEx");
    const auto start = applet<decltype(Fg_AcquireEx)>("Fg_AcquireEx");
    const auto stop = applet<decltype(Fg_stopAcquireEx)>("Fg_stopAcquireEx");
    ASSERT_EQ(start(&grabber, 0, 4, 1, memory), 0);
    EXPECT_EQ(wait(&grabber, 1, 0, 0, memory), kTimeOut);
    EXPECT_EQ(stop(&grabber, 0, memory, 0), 0);
    tavo_sim_losses losses{};
    EXPECT_EQ(board<decltype(tavo_sim_get_losses)>("tavo_sim_get_losses")(device(), &losses), 0);
    EXPECT_EQ(losses.dropped, 0U);
    EXPECT_EQ(board<decltype(tavo_sim_hold_dma)>("tavo_sim_hold_dma")(device(), 0), 0);

    ASSERT_EQ(start(&grabber, 0, 4, 1, memory), 0);
    EXPECT_EQ(wait(&grabber, 4, 0, 20, memory), 4);
    const auto tag = board<decltype(TavoGetDmaTag)>("TavoGetDmaTag");
    const auto stamp = board<decltype(TavoGetDmaTimeStamp)>("TavoGetDmaTimeStamp");
    const auto longStamp = board<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong");
    EXPECT_EQ(tag(device(), memory, 0), 2147483647);
    EXPECT_EQ(tag(device(), memory, 1), 0);
    for (frameindex_t i = 0; i < 4; ++i) {
        const uint64_t ns = longStamp(device(), memory, i);
        EXPECT_GE(ns, kLastMicrosecondNs - 15'000'000);
        EXPECT_EQ(stamp(device(), memory, i), static_cast<int>(ns / 1000 % 2147483648)) << "it begins at 0 again";
    }
    EXPECT_GE(stamp(device(), memory, 3), 0);
    EXPECT_LT(stamp(device(), memory, 3), 2147483647) << "it has wrapped";
    EXPECT_EQ(stop(&grabber, 0, memory, 0), 0);
    EXPECT_EQ(board<decltype(TavoFreeVirtualUserBuffer)>("TavoFreeVirtualUserBuffer")(device(), memory), 0);
}

/// A folder in which the runtime library looks for design files.
class ExternalDesignTest : public GrabberLifeTest {
protected:
    fs::path file() const { return mFolder.root() / "Quilmo.stdhap"; }
    /// Compiles the applet's own design with another name and board type into the external file.
    std::string compile(const std::string& name, int boardType = 2626) {
        std::ifstream input(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon.design");
        std::string text{std::istreambuf_iterator<char>(input), {}};
        replace(text, "board-type 2626", "board-type " + std::to_string(boardType));
        replace(text, "DESIGN_NAME \"Quillon\"", "DESIGN_NAME \"" + name + "\"");
        const fs::path source = mFolder.root() / "external.design";
        std::ofstream(source) << text;
        const std::string command =
            std::string("'") + QUILLON_DESIGNC + "' '" + source.string() + "' '" + file().string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        std::ifstream image(file(), std::ios::binary);
        return {std::istreambuf_iterator<char>(image), {}};
    }
    void write(const std::string& image) const {
        std::ofstream(file(), std::ios::binary | std::ios::trunc)
            .write(image.data(), static_cast<std::streamsize>(image.size()));
    }
    /// \return the name of the design that the applet opens
    std::string openedDesign() {
        EXPECT_EQ(open(), 0);
        EXPECT_EQ(grabber.Master != nullptr && set(FG_WIDTH, 64) == 0, true);
        std::string name = designName();
        close();
        return name;
    }

private:
    static void replace(std::string& text, const std::string& from, const std::string& to) {
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    }

    Installation mFolder;
    const Variable mPath{"TAVO_SIM_DESIGN_PATH", mFolder.root().c_str()};

protected:
    const Variable force{"__TAVO_FORCE_EXTERNAL_HAP", ""};
};

TEST_F(ExternalDesignTest, IsUsedWhenTheVariableIsDefined) {
    compile("External");
    EXPECT_EQ(openedDesign(), "External");
    force.set(nullptr);
    EXPECT_EQ(openedDesign(), "Quillon");
}

TEST_F(ExternalDesignTest, MissingOrForeignFileFallsBackToTheEmbeddedDesign) {
    EXPECT_EQ(openedDesign(), "Quillon");
    compile("External", 2627);
    EXPECT_EQ(openedDesign(), "Quillon");
    fs::remove(file());
    fs::create_directory(file());
    EXPECT_EQ(openedDesign(), "Quillon");
}

TEST_F(ExternalDesignTest, DamagedFileFallsBackToTheEmbeddedDesign) {
    const std::string image = compile("External");
    ASSERT_GT(image.size(), 100U);
    for (size_t length = 0; length < image.size(); length = length * 5 / 4 + 1) {
        write(image.substr(0, length));
        EXPECT_EQ(openedDesign(), "Quillon") << "cut to " << length;
    }
    write(image.substr(0, image.size() - 1));
    EXPECT_EQ(openedDesign(), "Quillon") << "one byte short";
    for (size_t at = 0; at < image.size(); at += image.size() / 40 + 1) {
        std::string damaged = image;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
        write(damaged);
        EXPECT_EQ(openedDesign(), "Quillon") << "byte " << at;
    }
    write(std::string(100000, '\xFF'));
    EXPECT_EQ(openedDesign(), "Quillon");
    write(image);
    EXPECT_EQ(openedDesign(), "External");
}

}  // namespace
