// The staged applet over the software board as a host uses it: opening and closing, every function of a grabber,
// acquisitions in all trigger modes, and the bench through the board's control interface.
#include <type_traits>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"

namespace {

/// A grabber of the staged applet for pictures of 64 x 32 pixels, over the software board in fast mode, and buffers.
class GrabberTest : public testing::Test {
protected:
    static constexpr frameindex_t kBuffers = 4;
    static constexpr size_t kBytes = 64 * 32;

    GrabberTest() {
        board<decltype(tavo_sim_camera_scene)>("tavo_sim_camera_scene")(device(), 64, 32);
        board<decltype(tavo_sim_mode)>("tavo_sim_mode")(device(), TAVO_SIM_FAST);
    }
    ~GrabberTest() override {
        if (memory != nullptr) {
            stop();
            EXPECT_EQ(applet<decltype(TavoFreeVirtualUserBuffer)>("TavoFreeVirtualUserBuffer")(device(), memory), 0);
        }
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
    /// Opens the grabber, sets it up and adds the buffers.
    void openWithBuffers() {
        EXPECT_EQ(open(), 0);
        set(FG_WIDTH, 64);
        set(FG_HEIGHT, 32);
        memory =
            applet<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(device(), mPixels.size(), kBuffers);
        const auto add = applet<decltype(TavoAddUserBuffer)>("TavoAddUserBuffer");
        for (frameindex_t i = 0; i < kBuffers; ++i) {
            EXPECT_EQ(add(device(), memory, &mPixels[static_cast<size_t>(i) * kBytes], kBytes, i), 0);
        }
    }
    template <class Function>
    Function* board(const char* name) {
        return mBoard.function<Function>(name);
    }
    template <class Function>
    Function* applet(const char* name) {
        return mApplet.function<Function>(name);
    }
    template <class Value>
    int write(int id, Value value) {
        const FgParamTypes type = std::is_same_v<Value, double> ? FG_PARAM_TYPE_DOUBLE : FG_PARAM_TYPE_INT32_T;
        return applet<decltype(Fg_setParameterWithType)>("Fg_setParameterWithType")(&grabber, id, &value, 0, type);
    }
    template <class Value>
    void set(int id, Value value) {
        EXPECT_EQ(write(id, value), 0) << id << " = " << value;
    }
    int get(int id) {
        int value = -12345;
        const auto read = applet<decltype(Fg_getParameterWithType)>("Fg_getParameterWithType");
        EXPECT_EQ(read(&grabber, id, &value, 0, FG_PARAM_TYPE_INT32_T), 0);
        return value;
    }
    void start(frameindex_t pictures) {
        EXPECT_EQ(applet<decltype(Fg_AcquireEx)>("Fg_AcquireEx")(&grabber, 0, pictures, 1, memory), 0);
    }
    int stop() { return applet<decltype(Fg_stopAcquireEx)>("Fg_stopAcquireEx")(&grabber, 0, memory, 0); }
    frameindex_t waitFor(frameindex_t picture, int seconds = 20) {
        const auto wait = applet<decltype(Fg_getLastPicNumberBlockingEx)>("Fg_getLastPicNumberBlockingEx");
        return wait(&grabber, picture, 0, seconds, memory);
    }
    /// \return nanoseconds between picture \p number and the one before
    uint64_t gapNs(frameindex_t number) {
        const auto stamp = applet<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong");
        return stamp(device(), memory, number - 1) - stamp(device(), memory, number - 2);
    }
    void sendSoftwareTriggers(int count) {
        for (int sent = 0; sent < count;) {
            const int code = write(FG_SENDSOFTWARETRIGGER, 1);
            ASSERT_THAT(code, testing::AnyOf(0, 8803, -60));  // 8803: accepted behind others, -60: busy
            sent += code == -60 ? 0 : 1;
        }
    }
    tavo_sim_trigger_state trigger() {
        tavo_sim_trigger_state state{};
        EXPECT_EQ(board<decltype(tavo_sim_trigger)>("tavo_sim_trigger")(device(), &state), 0);
        return state;
    }
    /// \return the name of the design that the applet has loaded, empty without one
    std::string designName() {
        fpga_design* design = nullptr;
        mFunctions.Info(GET_INFO_DESIGN_HANDLE, 0, 0, &design, nullptr);
        const char* name = applet<decltype(HapGetUserInfoByName)>("HapGetUserInfoByName")(design, "DESIGN_NAME");
        return name == nullptr ? "" : name;
    }

    Fg_Struct grabber{};
    dma_mem* memory = nullptr;

private:
    Library mApplet{kStagedApplet};
    AppletFunctions mFunctions{mApplet};
    Library mBoard{kStage / "lib" / "libtavo_hw.so"};
    std::vector<unsigned char> mPixels = std::vector<unsigned char>(kBuffers * kBytes);
};

TEST_F(GrabberTest, OpensAndRefusedOpensFollowEachOtherAThousandTimes) {
    const auto fail = board<decltype(tavo_sim_fail)>("tavo_sim_fail");
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(fail(device(), "TavoConfigureFpga", 1, -55), 0);
        ASSERT_EQ(open(), -55) << round;
        ASSERT_EQ(grabber.Master, nullptr);
        ASSERT_EQ(designName(), "") << "the design of a refused open is still loaded";
        ASSERT_EQ(open(), 0) << round;
        ASSERT_EQ(designName(), "Quillon");
        close();
        ASSERT_EQ(designName(), "") << "the design of round " << round << " is still loaded";
    }
}

TEST_F(GrabberTest, EveryFunctionOfAGrabberAnswers) {
    openWithBuffers();
    EXPECT_EQ(applet<decltype(Fg_getAppletId)>("Fg_getAppletId")(&grabber, nullptr), 172032096);
    EXPECT_EQ(applet<decltype(Fg_getNrOfParameter)>("Fg_getNrOfParameter")(&grabber), 87);
    EXPECT_EQ(applet<decltype(Fg_getParameterIdByName)>("Fg_getParameterIdByName")(&grabber, "FG_WIDTH"), 100);
    EXPECT_EQ(applet<decltype(Fg_getParameterId)>("Fg_getParameterId")(&grabber, 0), 90);
    EXPECT_STREQ(applet<decltype(Fg_getParameterName)>("Fg_getParameterName")(&grabber, 0), "FG_FRAMESPERSEC");
    EXPECT_NE(applet<decltype(Fg_getParameterInfo)>("Fg_getParameterInfo")(&grabber, 0), nullptr);
    size_t size = 0;
    EXPECT_EQ(applet<decltype(Fg_getParameterInfoXML)>("Fg_getParameterInfoXML")(&grabber, 0, nullptr, &size), 0);
    EXPECT_GT(size, 10000U);
    EXPECT_EQ(applet<decltype(Fg_getStatusEx)>("Fg_getStatusEx")(&grabber, 1, 0, 0, memory), -2070);
    EXPECT_EQ(applet<decltype(Fg_AllocShading)>("Fg_AllocShading")(&grabber, 0, 0), nullptr);
    EXPECT_EQ(applet<decltype(Fg_FreeShading)>("Fg_FreeShading")(&grabber, nullptr), 0);
    const Installation folder;
    const std::string file = (folder.root() / "saved.mcf").string();
    EXPECT_EQ(applet<decltype(Fg_saveConfig)>("Fg_saveConfig")(&grabber, file.c_str()), 0);
    set(FG_WIDTH, 128);
    EXPECT_EQ(applet<decltype(Fg_loadConfig)>("Fg_loadConfig")(&grabber, file.c_str()), 0);
    EXPECT_EQ(get(FG_WIDTH), 64);
    EXPECT_EQ(get(FG_LINEALIGNMENT), 32);
    EXPECT_EQ(write(FG_WIDTH, 65), -7080);
    EXPECT_EQ(applet<decltype(Fg_getLastErrorNumber)>("Fg_getLastErrorNumber")(&grabber), -7080);
}

TEST_F(GrabberTest, EveryModeBringsAHundredPicturesInItsOwnWay) {
    const struct {
        int mode;
        int code;
        bool takesSoftwareTriggers;
        uint64_t gapNs;  // between pictures; 0 where the host sets it
    } rows[]{
        {0, 0,     false, 10'000'000}, // free run
        {1, 0,     false, 33'330'000}, // of the grabber
        {2, 0,     false, 20'000'000}, // of an input
        {3, -6000, false, 0         }, // with a second camera, which the design does not have
        {4, 0,     true,  0         },
        {5, -6000, false, 0         },
        {6, -6000, false, 0         },
        {7, 0,     true,  0         }, // queued
    };
    openWithBuffers();
    EXPECT_EQ(board<decltype(tavo_sim_input_rate)>("tavo_sim_input_rate")(device(), 6, 50), 0);
    for (const auto& [mode, code, takesSoftwareTriggers, expectedGapNs] : rows) {
        SCOPED_TRACE(mode);
        const uint64_t before = trigger().pulses;
        ASSERT_EQ(write(FG_TRIGGERMODE, mode), code);
        if (code != 0) continue;
        if (mode != 0) set(FG_EXSYNCON, 1);
        if (mode == 1) set(FG_FRAMESPERSEC, 30.0);
        if (mode == 2) set(FG_TRIGGERINSRC, 6);
        start(takesSoftwareTriggers ? 1000 : 100);
        EXPECT_EQ(write(FG_WIDTH, 128), -7090);
        if (takesSoftwareTriggers) {
            sendSoftwareTriggers(100);
        } else {
            EXPECT_EQ(write(FG_SENDSOFTWARETRIGGER, 1), -8010);
        }
        EXPECT_EQ(waitFor(100), 100);
        EXPECT_EQ(stop(), 0);
        EXPECT_EQ(applet<decltype(Fg_getLastPicNumberEx)>("Fg_getLastPicNumberEx")(&grabber, 0, memory), 100);
        EXPECT_TRUE(expectedGapNs == 0 || gapNs(100) == expectedGapNs) << gapNs(100);
        const uint64_t pulses = trigger().pulses - before;
        EXPECT_TRUE(takesSoftwareTriggers ? pulses == 100 : (pulses >= 100) == (mode != 0)) << pulses;
    }
    tavo_sim_statistics statistics{};
    EXPECT_EQ(board<decltype(tavo_sim_get_statistics)>("tavo_sim_get_statistics")(device(), &statistics), 0);
    EXPECT_EQ(statistics.missed, 0U);
}

TEST_F(GrabberTest, TagsAndTimeStampsBeginAgain) {
    constexpr uint64_t kLastMicrosecondNs = 2'147'483'647'000;
    const auto begin = board<decltype(tavo_sim_first_time_stamp)>("tavo_sim_first_time_stamp");
    openWithBuffers();
    EXPECT_EQ(board<decltype(tavo_sim_first_tag)>("tavo_sim_first_tag")(device(), 2147483647), 0);
    EXPECT_EQ(begin(device(), kLastMicrosecondNs - 15'000'000), 0);
    start(kBuffers);
    EXPECT_EQ(waitFor(kBuffers), kBuffers);
    const auto tag = applet<decltype(TavoGetDmaTag)>("TavoGetDmaTag");
    const auto stamp = applet<decltype(TavoGetDmaTimeStamp)>("TavoGetDmaTimeStamp");
    const auto longStamp = applet<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong");
    EXPECT_EQ(tag(device(), memory, 0), 2147483647);
    EXPECT_EQ(tag(device(), memory, 1), 0);
    EXPECT_GE(longStamp(device(), memory, 0), kLastMicrosecondNs - 15'000'000);
    const uint64_t lastNs = longStamp(device(), memory, kBuffers - 1);
    EXPECT_GT(lastNs, kLastMicrosecondNs + 1000);
    EXPECT_EQ(stamp(device(), memory, kBuffers - 1), static_cast<int>(lastNs / 1000 - 2147483648)) << "it has wrapped";
}

TEST_F(GrabberTest, TheBenchRefusesWhatItDoesNotHave) {
    const auto pulse = board<decltype(tavo_sim_pulse)>("tavo_sim_pulse");
    const auto rate = board<decltype(tavo_sim_input_rate)>("tavo_sim_input_rate");
    const auto camera = board<decltype(tavo_sim_camera_trigger)>("tavo_sim_camera_trigger");
    const auto state = board<decltype(tavo_sim_trigger)>("tavo_sim_trigger");
    EXPECT_EQ(pulse(device(), 8), TAVO_SIM_BAD_SETTING);
    EXPECT_STREQ(board<decltype(tavo_sim_last_error)>("tavo_sim_last_error")(),
                 "there is no digital input 8: they are 0 to 7");
    EXPECT_EQ(pulse(device(), -1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(rate(device(), -1, 1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(camera(device(), 6), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(camera(device(), -1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(state(device(), nullptr), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(state(nullptr, nullptr), TAVO_SIM_NO_DEVICE);
}

}  // namespace
