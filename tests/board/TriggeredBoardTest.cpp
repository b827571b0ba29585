// A board whose camera is triggered, from the registers to the pictures, in fast mode unless a test says otherwise.
#include <thread>

#include "board/StageFixture.h"

using namespace simulation;

namespace {

/// Time base 10 us, exposure 4000 us. The sensor of 64 x 32 pixels is read out in 25 ns * 2048 / 17 = 3011 ns.
class TriggeredBoardTest : public StageFixture {
protected:
    TriggeredBoardTest() {
        set("AATrgArea_HdPeriod", 624);
        set("AATrgArea_ExSyncHigh", 399);
        set("AATrgArea_ExSyncLow", 399);
        set("AATrg_CCConfig", 0xCCC0);
    }
    void switchOn(uint64_t maker) {
        set("AATrgArea_ExSyncMode", maker);
        set("AATrgArea_ExSyncOn", 1);
    }
    uint64_t status(const std::string& name) { return read(handleOf(name)); }
    void softwareTrigger() {
        for (const uint64_t level : {0U, 1U, 1U, 0U}) {
            set("AATrg_ImgSwSet", level);
        }
    }
    /// \return the time that picture \p number came after the one before
    int64_t gapNs(int32_t number) {
        return (mBuffers->ofPicture(number)->stamp - mBuffers->ofPicture(number - 1)->stamp).count();
    }
};

TEST_F(TriggeredBoardTest, TwoHundredFramesKeepTheProgrammedPeriod) {
    BufferSet& buffers = addBuffers(200);
    set("AATrgArea_ExSyncHigh", 3332);
    switchOn(0);
    ASSERT_EQ(start(200), 0);
    EXPECT_EQ(buffers.wait(200, 20), 200);
    EXPECT_EQ(buffers.ofPicture(1)->stamp.count(), 4'003'011) << "the exposure and the readout";
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
    set("AATrgArea_ExSyncHigh", 249);
    set("AATrgArea_ExSyncLow", 199);
    switchOn(0);
    ASSERT_EQ(start(4), 0);
    EXPECT_EQ(buffers.wait(4, 20), 4);
    for (int32_t picture = 1; picture <= 4; ++picture) {
        EXPECT_EQ(buffers.ofPicture(picture)->frame, static_cast<uint64_t>(2 * picture - 1));
    }
    EXPECT_EQ(mBoard.statistics().missed, 4U) << "one during the last readout";
    EXPECT_EQ(mBoard.statistics().lost, 0U);
    ASSERT_EQ(start(1), 0);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_LE(mBoard.statistics().missed, 2U) << "each transfer counts its own";
}

TEST_F(TriggeredBoardTest, EverySoftwareTriggerBringsAPicture) {
    BufferSet& buffers = addBuffers(100);
    set("AATrg_ImgSwEnable", 1);
    switchOn(1);
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
    set("AATrgArea_ExSyncHigh", 3332);
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(row.trigger) << " " << row.ccConfig << " " << row.exSyncOn);
        mBoard.setCameraTrigger(row.trigger);
        set("AATrg_CCConfig", row.ccConfig);
        set("AATrgArea_ExSyncOn", row.exSyncOn);
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

TEST_F(TriggeredBoardTest, InputsTriggerFromTheBench) {
    BufferSet& buffers = addBuffers(64);
    set("AATrg_ImgInSelect", 5);
    set("AATrg_ImgInLowActive", 1);
    switchOn(1);
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
}

TEST_F(TriggeredBoardTest, PollingWithoutATransferComesToAnEnd) {
    set("AATrg_ImgSwEnable", 1);
    switchOn(1);
    softwareTrigger();
    int polls = 0;
    while (status("AATrg_ImgBusy") == 1) ASSERT_LT(++polls, 100);
    EXPECT_GT(polls, 10) << "a host that looks a few times does not move time";
    // A transfer that brings nothing does not lead time on, either.
    addBuffers(1);
    ASSERT_EQ(start(-1), 0);
    set("AAglobal_work", 0);
    set("AATrg_ImgSwEnable", 0);
    set("AATrgArea_SwTrgQueueEnable", 1);
    set("AATrgArea_SwTrgQueueTriggers", 20);
    for (int left = 1'000'000; status("AATrgArea_SwTrgQueueFillLevel") > 0; --left) {
        ASSERT_GT(left, 0);
        std::this_thread::yield();
    }
}

TEST_F(TriggeredBoardTest, TheExposureSetsTheBrightness) {
    const std::vector<uint8_t> free = acquire();
    set("AATrgArea_ExSyncHigh", 1999);
    switchOn(0);
    EXPECT_EQ(acquire(), free) << "4000 us show the scene as it is";
    set("AATrgArea_ExSyncLow", 99);
    const std::vector<uint8_t> dark = acquire();
    for (size_t i = 0; i < free.size(); ++i) ASSERT_EQ(dark[i], (free[i] + 2) / 4) << i;
}

}  // namespace
