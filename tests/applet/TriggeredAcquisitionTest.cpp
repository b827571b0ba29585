// Triggered acquisitions as a host runs them: the staged applet over the software board in fast mode, and the bench
// through the board's control interface.
#include <array>
#include <thread>
#include <type_traits>

#include "simulation/tavo_hw/tavo_sim.h"
#include "tests/applet/AppletLibrary.h"

namespace {

// Values of FG_TRIGGERMODE; the design has one camera, so nothing runs synchronously with another.
enum Mode : int {
    kFreeRun = 0,
    kGrabberControlled = 1,
    kExternal = 2,
    kSynchronous = 3,
    kSoftware = 4,
    kSoftwareQueued = 7,
};
constexpr int kBusy = -60;
constexpr int kQueuedBehindOthers = 8803;
constexpr int kNoAccess = -8010;
constexpr int kBuffers = 4;
constexpr size_t kBytes = 64 * 32;

class TriggeredAcquisitionTest : public testing::Test {
protected:
    TriggeredAcquisitionTest() {
        board<decltype(tavo_sim_camera_scene)>("tavo_sim_camera_scene")(device(), 64, 32);
        board<decltype(tavo_sim_mode)>("tavo_sim_mode")(device(), TAVO_SIM_FAST);
        int err = -1;
        mGrabber.Master = mFunctions.Std_entry(device(), &err, 0);
        EXPECT_EQ(err, 0);
        set(FG_WIDTH, 64);
        set(FG_HEIGHT, 32);
        addBuffers();
    }
    ~TriggeredAcquisitionTest() override {
        stop();
        board<decltype(TavoFreeVirtualUserBuffer)>("TavoFreeVirtualUserBuffer")(device(), mMemory);
        mFunctions.Fg_FreeGrabber(&mGrabber);
        board<decltype(tavo_sim_close)>("tavo_sim_close")(device());
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
        return applet<decltype(Fg_setParameterWithType)>("Fg_setParameterWithType")(&mGrabber, id, &value, 0, type);
    }
    template <class Value>
    void set(int id, Value value) {
        EXPECT_EQ(write(id, value), 0) << id << " = " << value;
    }
    int fillLevel() {
        int level = -1;
        EXPECT_EQ(applet<decltype(Fg_getParameterWithType)>("Fg_getParameterWithType")(
                      &mGrabber, FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, &level, 0, FG_PARAM_TYPE_INT32_T),
                  0);
        return level;
    }
    void start(frameindex_t pictures) {
        EXPECT_EQ(applet<decltype(Fg_AcquireEx)>("Fg_AcquireEx")(&mGrabber, 0, pictures, 1, mMemory), 0);
    }
    void stop() { applet<decltype(Fg_stopAcquireEx)>("Fg_stopAcquireEx")(&mGrabber, 0, mMemory, 0); }
    frameindex_t waitFor(frameindex_t picture, int seconds = 20) {
        return applet<decltype(Fg_getLastPicNumberBlockingEx)>("Fg_getLastPicNumberBlockingEx")(&mGrabber, picture, 0,
                                                                                                seconds, mMemory);
    }
    frameindex_t last() {
        return applet<decltype(Fg_getLastPicNumberEx)>("Fg_getLastPicNumberEx")(&mGrabber, 0, mMemory);
    }
    /// \return nanoseconds between picture \p number and the one before
    uint64_t gapNs(frameindex_t number) {
        const auto stamp = board<decltype(TavoGetDmaTimeStampLong)>("TavoGetDmaTimeStampLong");
        return stamp(device(), mMemory, number - 1) - stamp(device(), mMemory, number - 2);
    }
    void sendSoftwareTriggers(int count) {
        for (int sent = 0; sent < count;) {
            const int code = write(FG_SENDSOFTWARETRIGGER, 1);
            if (code == 0 || code == kQueuedBehindOthers) {
                ++sent;
            } else {
                ASSERT_EQ(code, kBusy);
                std::this_thread::yield();
            }
        }
    }
    tavo_sim_trigger_state trigger() {
        tavo_sim_trigger_state state{};
        EXPECT_EQ(board<decltype(tavo_sim_trigger)>("tavo_sim_trigger")(device(), &state), 0);
        return state;
    }
    uint64_t missed() {
        tavo_sim_statistics statistics{};
        EXPECT_EQ(board<decltype(tavo_sim_get_statistics)>("tavo_sim_get_statistics")(device(), &statistics), 0);
        return statistics.missed;
    }

private:
    void addBuffers() {
        mMemory = board<decltype(TavoGetVirtualUserBuffer)>("TavoGetVirtualUserBuffer")(device(), kBuffers * kBytes,
                                                                                        kBuffers);
        mPixels.assign(kBuffers, std::vector<unsigned char>(kBytes));
        for (int i = 0; i < kBuffers; ++i) {
            EXPECT_EQ(board<decltype(TavoAddUserBuffer)>("TavoAddUserBuffer")(
                          device(), mMemory, mPixels[static_cast<size_t>(i)].data(), kBytes, i),
                      0);
        }
    }

    Library mApplet{kStagedApplet};
    AppletFunctions mFunctions{mApplet};
    Library mBoard{kStage / "lib" / "libtavo_hw.so"};
    std::vector<std::vector<unsigned char>> mPixels;
    dma_mem* mMemory = nullptr;
    Fg_Struct mGrabber{};
};

TEST_F(TriggeredAcquisitionTest, EveryModeBringsAHundredPicturesInItsOwnWay) {
    struct Row {
        int mode;
        int code;
        bool takesSoftwareTriggers;
        uint64_t gapNs;  // between pictures; 0 where the host sets it
    };
    constexpr std::array kRows{
        Row{kFreeRun,           0,     false, 10'000'000},
        Row{kGrabberControlled, 0,     false, 33'330'000},
        Row{kExternal,          0,     false, 20'000'000},
        Row{kSynchronous,       -6000, false, 0         },
        Row{kSoftware,          0,     true,  0         },
        Row{5,                  -6000, false, 0         },
        Row{6,                  -6000, false, 0         },
        Row{kSoftwareQueued,    0,     true,  0         },
    };
    const auto setRate = board<decltype(tavo_sim_input_rate)>("tavo_sim_input_rate");
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.mode);
        const uint64_t before = trigger().pulses;
        ASSERT_EQ(write(FG_TRIGGERMODE, row.mode), row.code);
        if (row.code != 0) continue;
        if (row.mode != kFreeRun) set(FG_EXSYNCON, 1);
        if (row.mode == kGrabberControlled) set(FG_FRAMESPERSEC, 30.0);
        if (row.mode == kExternal) {
            set(FG_TRIGGERINSRC, 6);
            EXPECT_EQ(setRate(device(), 6, 50), 0);
        }
        start(row.takesSoftwareTriggers ? 1000 : 100);
        if (row.takesSoftwareTriggers) {
            sendSoftwareTriggers(100);
        } else {
            EXPECT_EQ(write(FG_SENDSOFTWARETRIGGER, 1), kNoAccess);
        }
        EXPECT_EQ(waitFor(100), 100);
        stop();
        EXPECT_EQ(last(), 100);
        EXPECT_EQ(missed(), 0U);
        EXPECT_TRUE(row.gapNs == 0 || gapNs(100) == row.gapNs) << gapNs(100);
        const uint64_t pulses = trigger().pulses - before;
        if (row.takesSoftwareTriggers) {
            EXPECT_EQ(pulses, 100U);
        } else {
            EXPECT_EQ(pulses >= 100, row.mode != kFreeRun) << pulses;
        }
    }
}

TEST_F(TriggeredAcquisitionTest, AFullQueueRefusesAndAllThatWasAcceptedComes) {
    set(FG_TRIGGERMODE, int{kSoftwareQueued});
    set(FG_EXSYNCON, 1);
    EXPECT_EQ(write(FG_SENDSOFTWARETRIGGER, 200), 0);
    EXPECT_EQ(write(FG_SENDSOFTWARETRIGGER, 100), kBusy) << "no room for all of them";
    EXPECT_EQ(write(FG_SENDSOFTWARETRIGGER, 50), kQueuedBehindOthers);
    EXPECT_EQ(fillLevel(), 249) << "one is on its way, and time stands still without a transfer";
    start(1000);
    EXPECT_EQ(waitFor(250), 250);
    EXPECT_EQ(fillLevel(), 0);
    sendSoftwareTriggers(100);
    EXPECT_EQ(waitFor(350), 350);
    stop();
    EXPECT_EQ(last(), 350);
    EXPECT_EQ(trigger().pulses, 350U);
}

TEST_F(TriggeredAcquisitionTest, ThePulseLimitEndsTheSeries) {
    set(FG_LIMIT_TRIGGER_PULSES, 10);
    set(FG_TRIGGERMODE, int{kGrabberControlled});
    set(FG_EXSYNCON, 1);
    start(20);
    EXPECT_EQ(waitFor(10), 10);
    EXPECT_EQ(waitFor(11, 0), TAVO_SIM_TIME_OUT);
    EXPECT_EQ(trigger().pulses, 10U);
    set(FG_LIMIT_TRIGGER_PULSES, 5);
    EXPECT_EQ(waitFor(15), 15) << "written again, it counts again";
    EXPECT_EQ(waitFor(16, 0), TAVO_SIM_TIME_OUT);
    set(FG_LIMIT_TRIGGER_PULSES, 0);
    EXPECT_EQ(waitFor(20), 20);
}

TEST_F(TriggeredAcquisitionTest, DelaysAndPolaritiesReachTheSignals) {
    set(FG_TRIGGERMODE, int{kExternal});
    set(FG_EXSYNCON, 1);
    set(FG_FLASHON, 1);
    set(FG_EXSYNCDELAY, 50.0);
    set(FG_STROBEPULSEDELAY, 200.0);
    set(FG_FLASHTIME, 300.0);
    set(FG_FLASHTIME_SYNC, 0);
    set(FG_FLASH_POLARITY, 1);
    set(FG_EXPOSURE, 1000);
    EXPECT_EQ(trigger().exSync.level, 1);
    start(2);
    EXPECT_EQ(board<decltype(tavo_sim_pulse)>("tavo_sim_pulse")(device(), 0), 0);
    EXPECT_EQ(waitFor(1), 1);
    const tavo_sim_trigger_state low = trigger();
    EXPECT_EQ(low.exSync.lastFallingNs - low.lastTriggerNs, 50'000U);
    EXPECT_EQ(low.exSync.lastRisingNs - low.exSync.lastFallingNs, 1'000'000U);
    EXPECT_EQ(low.flash.lastRisingNs - low.lastTriggerNs, 200'000U);
    EXPECT_EQ(low.flash.lastFallingNs - low.flash.lastRisingNs, 300'000U);
    set(FG_EXSYNCPOLARITY, 1);
    set(FG_FLASH_POLARITY, 0);
    EXPECT_EQ(trigger().exSync.level, 0);
    EXPECT_EQ(trigger().flash.level, 1);
}

TEST_F(TriggeredAcquisitionTest, TheBenchRefusesWhatItDoesNotHave) {
    const auto pulse = board<decltype(tavo_sim_pulse)>("tavo_sim_pulse");
    const auto rate = board<decltype(tavo_sim_input_rate)>("tavo_sim_input_rate");
    const auto camera = board<decltype(tavo_sim_camera_trigger)>("tavo_sim_camera_trigger");
    const auto readout = board<decltype(tavo_sim_readout_time)>("tavo_sim_readout_time");
    const auto state = board<decltype(tavo_sim_trigger)>("tavo_sim_trigger");
    const auto why = board<decltype(tavo_sim_last_error)>("tavo_sim_last_error");
    EXPECT_EQ(pulse(device(), 8), TAVO_SIM_BAD_SETTING);
    EXPECT_STREQ(why(), "there is no digital input 8: they are 0 to 7");
    EXPECT_EQ(pulse(device(), -1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(rate(device(), 0, 1e6), TAVO_SIM_BAD_SETTING);
    EXPECT_EQ(rate(device(), -1, 1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(camera(device(), 6), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(camera(device(), -1), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(readout(device(), 1e7), TAVO_SIM_BAD_SETTING);
    EXPECT_EQ(state(device(), nullptr), TAVO_SIM_BAD_ARGUMENT);
    EXPECT_EQ(state(nullptr, nullptr), TAVO_SIM_NO_DEVICE);
}

}  // namespace
