// A board whose camera is triggered, from the registers to the pictures, in fast mode unless a test says otherwise.
#include <future>
#include <numeric>
#include <thread>

#include "board/StageFixture.h"

using namespace simulation;

namespace {

/// Time base 10 us, exposure 4000 us. The sensor of 64 x 32 pixels is read out in 25 ns * 2048 / 17 = 3011 ns.
class TriggeredBoardTest : public StageFixture {
protected:
    TriggeredBoardTest() {
        set({
            {"AATrgArea_HdPeriod",   624   },
            {"AATrgArea_ExSyncHigh", 399   },
            {"AATrgArea_ExSyncLow",  399   },
            {"AATrg_CCConfig",       0xCCC0}
        });
    }
    void switchOn(uint64_t maker, std::map<std::string, uint64_t> more = {}) {
        set(more);
        set({
            {"AATrgArea_ExSyncMode", maker}
        });
        set({
            {"AATrgArea_ExSyncOn", 1}
        });
    }
    uint64_t status(const std::string& name) { return read(handleOf(name)); }
    void softwareTrigger() {
        for (const uint64_t level : {0U, 1U, 1U, 0U}) {
            set({
                {"AATrg_ImgSwSet", level}
            });
        }
    }
    /// Polls until the queue is empty; the test fails where that takes too long.
    void drain() {
        for (int polls = 0; status("AATrgArea_SwTrgQueueFillLevel") > 0; ++polls) {
            ASSERT_LT(polls, 1'000'000);
            std::this_thread::yield();
        }
    }
    /// \return the time that picture \p number came after the one before
    int64_t gapNs(int32_t number) {
        return (mBuffers->ofPicture(number)->stamp - mBuffers->ofPicture(number - 1)->stamp).count();
    }
};

TEST_F(TriggeredBoardTest, TwoHundredFramesKeepTheProgrammedPeriod) {
    BufferSet& buffers = addBuffers(200);
    switchOn(0, {
                    {"AATrgArea_ExSyncHigh", 3332}
    });
    ASSERT_EQ(start(200), 0);
    EXPECT_EQ(buffers.wait(200, 20), 200);
    for (int32_t picture = 2; picture <= 200; ++picture) {
        EXPECT_EQ(gapNs(picture), 33'330'000) << picture;
        EXPECT_EQ(buffers.ofPicture(picture)->frame, static_cast<uint64_t>(picture));
    }
}

TEST_F(TriggeredBoardTest, MissedTriggersShowAsGapsInTheTags) {
    ASSERT_EQ(mBoard.setReadoutTime(5000).code, 0);
    BufferSet& buffers = addBuffers(4);
    // An exposure of 2000 us at every 2500 us ends at 2000, 4500, 7000, 9500 and so on. A readout of 5000 us keeps the
    // first; the second ends during it, the third as it ends.
    switchOn(0, {
                    {"AATrgArea_ExSyncHigh", 249},
                    {"AATrgArea_ExSyncLow",  199}
    });
    ASSERT_EQ(start(4), 0);
    EXPECT_EQ(buffers.wait(4, 20), 4);
    for (int32_t picture = 1; picture <= 4; ++picture) {
        EXPECT_EQ(buffers.ofPicture(picture)->frame, static_cast<uint64_t>(2 * picture - 1));
    }
    EXPECT_EQ(mBoard.statistics().missed, 4U) << "one during the last readout";
    EXPECT_EQ(mBoard.statistics().lost, 0U);
}

TEST_F(TriggeredBoardTest, EverySoftwareTriggerBringsAPicture) {
    BufferSet& buffers = addBuffers(100);
    switchOn(1, {
                    {"AATrg_ImgSwEnable", 1}
    });
    for (const ClockMode mode : {ClockMode::fast, ClockMode::realTime}) {
        SCOPED_TRACE(mode == ClockMode::fast);
        ASSERT_EQ(mBoard.setMode(mode).code, 0);
        ASSERT_EQ(start(-1), 0);
        const int triggers = mode == ClockMode::fast ? 100 : 10;
        for (int i = 0; i < triggers; ++i) {
            softwareTrigger();
            while (status("AATrg_ImgBusy") == 1) std::this_thread::yield();
        }
        EXPECT_EQ(buffers.wait(triggers, 20), triggers);
        EXPECT_EQ(mBoard.stopDma(0), 0);
        EXPECT_EQ(buffers.lastPicture(), triggers);
        EXPECT_EQ(mBoard.statistics().missed, 0U);
    }
}

TEST_F(TriggeredBoardTest, TheQueueDeliversAllThatItAccepted) {
    BufferSet& buffers = addBuffers(16);
    switchOn(1, {
                    {"AATrgArea_SwTrgQueueEnable", 1}
    });
    // Before the transfer starts, time stands still.
    set({
        {"AATrgArea_SwTrgQueueTriggers", 200}
    });
    ASSERT_EQ(start(-1), 0);
    EXPECT_EQ(buffers.wait(200, 20), 200);
    EXPECT_EQ(status("AATrgArea_SwTrgQueueFillLevel"), 0U);
    EXPECT_EQ(buffers.lastPicture(), 200);
    EXPECT_EQ(gapNs(200), 4'020'000) << "the exposure and two time bases";
    set({
        {"AATrgArea_SwTrgQueueTriggers", 255}
    });
    EXPECT_EQ(buffers.wait(455, 20), 455);
}

TEST_F(TriggeredBoardTest, PollingWithoutATransferComesToAnEnd) {
    switchOn(1, {
                    {"AATrg_ImgSwEnable", 1}
    });
    softwareTrigger();
    int polls = 0;
    while (status("AATrg_ImgBusy") == 1) ASSERT_LT(++polls, 100);
    EXPECT_GT(polls, 10) << "a host that looks a few times does not move time";
    set({
        {"AATrg_ImgSwEnable",          0},
        {"AATrgArea_SwTrgQueueEnable", 1}
    });
    set({
        {"AATrgArea_SwTrgQueueTriggers", 20}
    });
    drain();
    addBuffers(1);
    // A transfer that brings nothing does not lead time on, either.
    ASSERT_EQ(start(-1), 0);
    set({
        {"AAglobal_work",                0 },
        {"AATrgArea_SwTrgQueueTriggers", 20}
    });
    drain();
    set({
        {"AAglobal_work",  1     },
        {"AATrg_CCConfig", 0xCCCC}
    });
    set({
        {"AATrgArea_SwTrgQueueTriggers", 20}
    });
    drain();
}

TEST_F(TriggeredBoardTest, TheCameraObeysTheLineThatItHangsOn) {
    struct Row {
        CameraTrigger trigger;
        uint64_t ccConfig;
        uint64_t exSyncOn;
        int64_t gapNs;  // 0 = no pictures
    };
    constexpr std::array kRows{
        Row{CameraTrigger::automatic, 0xCCC0, 0, 10'000'000},
        Row{CameraTrigger::automatic, 0xCCC0, 1, 33'330'000},
        Row{CameraTrigger::automatic, 0xCC0C, 1, 0         },
        Row{CameraTrigger::free,      0xCCC0, 1, 10'000'000},
        Row{CameraTrigger::cc1,       0xCCC0, 0, 0         },
        Row{CameraTrigger::cc2,       0xCCC0, 1, 0         },
        Row{CameraTrigger::cc2,       0xCC0C, 1, 33'330'000},
        Row{CameraTrigger::cc4,       0x0CCC, 1, 33'330'000},
    };
    BufferSet& buffers = addBuffers(3);
    set({
        {"AATrgArea_ExSyncHigh", 3332}
    });
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(row.trigger) << " " << row.ccConfig << " " << row.exSyncOn);
        mBoard.setCameraTrigger(row.trigger);
        set({
            {"AATrg_CCConfig",     row.ccConfig},
            {"AATrgArea_ExSyncOn", row.exSyncOn}
        });
        ASSERT_EQ(start(3), 0);
        if (row.gapNs == 0) {
            EXPECT_EQ(buffers.wait(1, 0), kTimeOut);
        } else {
            EXPECT_EQ(buffers.wait(3, 20), 3);
            EXPECT_EQ(gapNs(3), row.gapNs);
        }
        EXPECT_EQ(mBoard.stopDma(0), 0);
    }
}

TEST_F(TriggeredBoardTest, AWaitForATriggerThatNeverComesEndsAtOnce) {
    for (const ClockMode mode : {ClockMode::fast, ClockMode::realTime}) {
        ASSERT_EQ(mBoard.setMode(mode).code, 0);
        BufferSet& buffers = addBuffers(1);
        switchOn(1);
        ASSERT_EQ(start(-1), 0);
        auto waiting = std::async(std::launch::async, [&] { return buffers.wait(1, 1'000'000); });
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        const Stopwatch watch;
        EXPECT_EQ(mBoard.stopDma(0), 0);
        EXPECT_EQ(waiting.get(), kStopped);
        EXPECT_LT(watch.seconds(), 20.0);
    }
}

TEST_F(TriggeredBoardTest, InputsTriggerFromTheBench) {
    BufferSet& buffers = addBuffers(64);
    switchOn(1, {
                    {"AATrg_ImgInSelect",    5},
                    {"AATrg_ImgInLowActive", 1}
    });
    ASSERT_EQ(start(-1), 0);
    EXPECT_EQ(mBoard.setInputs(0xFF).code, 0);
    EXPECT_EQ(buffers.wait(1, 0), kTimeOut) << "a rising edge";
    EXPECT_EQ(mBoard.setInputs(0xDF).code, 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_EQ(mBoard.pulse(4).code, 0);
    EXPECT_EQ(mBoard.pulse(5).code, 0);
    EXPECT_EQ(buffers.wait(2, 20), 2);
    EXPECT_EQ(buffers.lastPicture(), 2);
    EXPECT_EQ(mBoard.stopDma(0), 0);

    EXPECT_EQ(mBoard.setInputRate(5, 50).code, 0);
    ASSERT_EQ(start(10), 0);
    EXPECT_EQ(buffers.wait(10, 20), 10);
    EXPECT_EQ(gapNs(10), 20'000'000);
    EXPECT_EQ(mBoard.setInputRate(5, 0).code, 0);
    ASSERT_EQ(start(1), 0);
    EXPECT_EQ(buffers.wait(1, 0), kTimeOut);
    for (const double rate : {0.009, 100'001.0, -1.0, std::nan("")}) {
        EXPECT_EQ(mBoard.setInputRate(5, rate).code, kBadSetting) << rate;
    }
    EXPECT_EQ(mBoard.setInputRate(8, 1).code, kBadSetting);
    EXPECT_EQ(mBoard.pulse(8).code, kBadSetting);
    for (const double time : {-1.0, 1'000'001.0, std::nan("")}) {
        EXPECT_EQ(mBoard.setReadoutTime(time).code, kBadSetting) << time;
    }
}

TEST_F(TriggeredBoardTest, TheExposureSetsTheBrightness) {
    const std::vector<uint8_t> free = acquire();
    switchOn(0, {
                    {"AATrgArea_ExSyncHigh", 1999}
    });
    EXPECT_EQ(acquire(), free) << "4000 us show the scene as it is";
    const auto sum = [](const std::vector<uint8_t>& pixels) {
        return std::accumulate(pixels.begin(), pixels.end(), uint64_t{0});
    };
    set({
        {"AATrgArea_ExSyncLow", 99}
    });
    const std::vector<uint8_t> dark = acquire();
    for (size_t i = 0; i < free.size(); ++i) ASSERT_EQ(dark[i], (free[i] + 2) / 4) << i;
    set({
        {"AATrgArea_ExSyncLow", 1599}
    });
    EXPECT_GT(sum(acquire()), sum(free));
}

TEST_F(TriggeredBoardTest, RegistersMayChangeWhileFramesCome) {
    ASSERT_EQ(mBoard.setMode(ClockMode::realTime).code, 0);
    BufferSet& buffers = addBuffers(4);
    ASSERT_EQ(start(-1), 0);
    switchOn(0, {
                    {"AATrgArea_ExSyncHigh", 99},
                    {"AATrgArea_ExSyncLow",  9 }
    });
    auto writing = std::async(std::launch::async, [&] {
        for (uint64_t i = 0; i < 2000; ++i) {
            set({
                {"AATrgArea_ExSyncHigh",  90 + i % 20 },
                {"AATrgArea_ExSyncDelay", i % 7       },
                {"AATrgArea_ExSyncOn",    i % 50 != 49}
            });
        }
        set({
            {"AATrgArea_ExSyncOn", 1}
        });
    });
    for (int i = 0; i < 200; ++i) {
        TriggerReport report;
        EXPECT_EQ(mBoard.triggerReport(report), 0);
        EXPECT_GE(report.now, report.lastTrigger);
        EXPECT_EQ(status("AATrg_ImgBusy"), 0U) << "of triggered pulses";
    }
    writing.get();
    EXPECT_GE(buffers.wait(buffers.lastPicture() + 10, 20), 10);
}

}  // namespace
