// What may run at the same time. The thread sanitizer watches; without it these tests look for hangs and wrong codes.
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <cstdlib>
#include <thread>

#include "fabrix/haprt.h"
#include "fabrix/tavo_hw.h"
#include "simulation/tavo_hw/tavo_sim.h"
#include "tavo_hal/src/platform/InstallationDirectory.h"
#include "tests/faults/FaultyRuntime.h"

namespace {

constexpr int kSoftwareTriggered = 4;

/// One grabber over the runtime that a test made.
class Grabber {
public:
    Grabber() {
        int err = -999;
        mHandle.Master = Std_entry(FaultyRuntime::device(), &err, 0);
        EXPECT_EQ(err, 0);
    }
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;
    ~Grabber() { Fg_FreeGrabber(&mHandle); }

    int set(int id, int value) { return Fg_setParameterWithType(&mHandle, id, &value, 0, FG_PARAM_TYPE_INT32_T); }
    int get(int id) {
        int value = -1;
        EXPECT_EQ(Fg_getParameterWithType(&mHandle, id, &value, 0, FG_PARAM_TYPE_AUTO), 0);
        return value;
    }
    int start(int mode = 1) { return Fg_AcquireEx(&mHandle, 0, 1000, mode, FaultyRuntime::memory()); }
    int stop() { return Fg_stopAcquireEx(&mHandle, 0, FaultyRuntime::memory(), 0); }
    frameindex_t wait() { return Fg_getLastPicNumberBlockingEx(&mHandle, 1, 0, 60, FaultyRuntime::memory()); }
    Fg_Struct* handle() { return &mHandle; }

private:
    Fg_Struct mHandle{};
};

TEST(ThreadTest, StopEndsABlockedWaitInTenThousandRounds) {
    constexpr int kRounds = 10000;
    FaultyRuntime runtime;
    Grabber grabber;
    ASSERT_EQ(grabber.set(FG_TRIGGERMODE, kSoftwareTriggered), 0);
    std::barrier round(2);
    int wrongCodes = 0;  // of the waiting thread
    std::thread waiter([&] {
        for (int i = 0; i < kRounds; ++i) {
            round.arrive_and_wait();  // started
            wrongCodes += grabber.wait() == FaultyRuntime::kStopped ? 0 : 1;
            round.arrive_and_wait();  // the wait is over
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        EXPECT_EQ(grabber.start(), 0);
        round.arrive_and_wait();
        // In every second round the stop and the wait race.
        while (i % 2 == 0 && runtime.waiters() == 0) std::this_thread::yield();
        const int triggered = i % 4 == 0 ? grabber.set(FG_SENDSOFTWARETRIGGER, 1) : FG_OK;
        EXPECT_GE(triggered, FG_SOFTWARE_TRIGGER_BUSY);
        EXPECT_EQ(grabber.stop(), 0);
        round.arrive_and_wait();
    }
    waiter.join();
    EXPECT_EQ(wrongCodes, 0);
    EXPECT_EQ(grabber.get(FG_DMASTATUS), 0);
}

TEST(ThreadTest, TwoGrabbersLiveInTwoThreads) {
    FaultyRuntime runtime;
    const auto live = [](int width) {
        for (int i = 0; i < 20; ++i) {
            Grabber grabber;
            EXPECT_EQ(grabber.set(FG_WIDTH, width), 0);
            EXPECT_EQ(grabber.start(1 + i % 2), 0);
            EXPECT_EQ(grabber.stop(), 0);
            EXPECT_NE(Fg_getParameterInfo(grabber.handle(), 0), nullptr);
            size_t size = 0;
            EXPECT_EQ(Fg_getParameterInfoXML(grabber.handle(), 0, nullptr, &size), 0);
            EXPECT_EQ(grabber.get(FG_WIDTH), width);
        }
    };
    std::thread first(live, 256);
    std::thread second(live, 512);
    first.join();
    second.join();
    EXPECT_EQ(runtime.designsOpen(), 0);
}

TEST(ThreadTest, FirstCallsFromTwoThreadsFindBothLibraries) {
    setenv("TAVODIR5", QUILLON_STAGE, 1);
    auto* const device = FaultyRuntime::device();
    for (int i = 0; i < 50; ++i) {
        {
            const FaultyRuntime emptiesTheTables;
        }
        tavo::platform::TavoLibStatic<>::gmIsInitialized = 0;
        std::barrier together(2);
        const auto call = [&] {
            together.arrive_and_wait();
            EXPECT_EQ(TavoGetCameraStatusExtended(device, 0), TAVO_SIM_NOT_CONFIGURED) << "the board's own answer";
            EXPECT_LE(HapGetNrOfRegister(nullptr), 0);
            EXPECT_EQ(HapLoadHapFileWithType("no such file", 0, 1), nullptr);
        };
        std::thread first(call);
        std::thread second(call);
        first.join();
        second.join();
    }
    { const FaultyRuntime emptiesTheTables; }
}

}  // namespace
