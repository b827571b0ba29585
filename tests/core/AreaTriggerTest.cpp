// The register side of the area trigger: what is written for each parameter and mode, on each design.
#include <map>

#include "tests/core/AreaTriggerFixture.h"

namespace {

using AreaTriggerTest = AreaTriggerFixture;

// clang-format off
/// Writes of the change into a mode at the defaults, ExSync switched on.
const std::map<int, std::string> kModeWrites{
    {0, "ExSyncOn 0"},
    {1, "HdLow 15, HdPeriod 624, ExSyncHigh 12499, ExSyncLow 399, FlashDelay 0, ExSyncDelay 0, ExSyncLow 399, "
        "ExSyncHigh 12499, ExSyncOn 0, ImgSwEnable 0, ExSyncMode 0, SwTrgQueueEnable 0, ExSyncOn 1"},
    {2, "HdLow 15, HdPeriod 624, ExSyncLow 399, ExSyncHigh 399, FlashDelay 0, ExSyncDelay 0, ExSyncLow 399, "
        "ExSyncHigh 399, ExSyncOn 0, ImgSwEnable 0, ExSyncMode 1, SwTrgQueueEnable 0, ExSyncOn 1"},
    {4, "HdLow 15, HdPeriod 624, ExSyncLow 399, ExSyncHigh 399, FlashDelay 0, ExSyncDelay 0, ExSyncLow 399, "
        "ExSyncHigh 399, ExSyncOn 0, ImgSwSet 0, ImgSwEnable 1, ImgSwSet 0, ExSyncMode 1, SwTrgQueueEnable 0, "
        "ExSyncOn 1"},
    {7, "HdLow 15, HdPeriod 624, ExSyncLow 399, ExSyncHigh 399, FlashDelay 0, ExSyncDelay 0, ExSyncLow 399, "
        "ExSyncHigh 399, ExSyncOn 0, ImgSwEnable 0, ExSyncMode 1, SwTrgQueueEnable 1, ExSyncOn 1"},
};
// clang-format on

TEST_F(AreaTriggerTest, EachModeChangeWritesItsSequence) {
    open();
    load(FG_EXSYNCON, 1);
    for (const auto& [mode, expected] : kModeWrites) {
        board.clearEvents();
        EXPECT_EQ(set(FG_TRIGGERMODE, mode), FG_OK) << mode;
        EXPECT_EQ(writes(), expected) << mode;
    }
    // Not offered on a one-camera design, but a file may bring it: as mode 1, without master sync.
    EXPECT_EQ(set(FG_TRIGGERMODE, 3), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(writesOf(FG_TRIGGERMODE, 3), kModeWrites.at(1));
}

TEST_F(AreaTriggerTest, ModesThatOnlyAFileCanBringSetNothingUp) {
    open();
    for (const int mode : {5, 6}) {
        EXPECT_EQ(writesOf(FG_TRIGGERMODE, mode), "");
        EXPECT_EQ(mResult, FG_ERROR);
        EXPECT_EQ(get(FG_TRIGGERMODE), mode) << "stored all the same";
        EXPECT_EQ(update(FG_EXPOSURE), "");
    }
    for (const int mode : {8, -1}) {
        EXPECT_EQ(load(FG_TRIGGERMODE, mode), FG_TRIGGER_MODE_MISMATCH);
        EXPECT_EQ(get(FG_TRIGGERMODE), 6);
    }
}

TEST_F(AreaTriggerTest, ModeChangeCountsItsFailedWritesAndGoesOn) {
    using Results = std::map<int, int>;  // by mode
    const std::map<std::string, Results> results{
        {"AATrgArea_ExSyncOn",         {{0, -1}, {1, -2}, {2, -2}, {4, -2}, {7, -2}}},
        {"AATrg_ImgSwEnable",          {{0, 0}, {1, -1}, {2, 0}, {4, 0}, {7, 0}}    },
        {"AATrg_ImgSwSet",             {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {7, 0}}     },
        {"AATrgArea_ExSyncMode",       {{0, 0}, {1, -1}, {2, -1}, {4, -1}, {7, -1}} },
        {"AATrgArea_SwTrgQueueEnable", {{0, 0}, {1, -1}, {2, -1}, {4, -1}, {7, -1}} },
        {"AATrgArea_HdPeriod",         {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {7, 0}}     },
        {"AATrgArea_ExSyncLow",        {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {7, 0}}     },
    };
    open();
    load(FG_EXSYNCON, 1);
    for (const auto& [failing, byMode] : results) {
        board.failWrite(failing, -20);
        for (const auto& [mode, result] : byMode) {
            SCOPED_TRACE(testing::Message() << failing << " in mode " << mode);
            EXPECT_EQ(writesOf(FG_TRIGGERMODE, mode), kModeWrites.at(mode));
            EXPECT_EQ(mResult, result);
            EXPECT_EQ(get(FG_TRIGGERMODE), mode);
        }
        board.failWrite(failing, 0);
    }
}

TEST_F(AreaTriggerTest, EachParameterWritesItsRegister) {
    openInMode(1);
    EXPECT_EQ(writesOf(FG_FRAMESPERSEC, 30.0), "ExSyncHigh 3332");
    EXPECT_EQ(writesOf(FG_EXPOSURE, 2500), "ExSyncLow 249");
    EXPECT_EQ(writesOf(FG_TRIGGERINSRC, 5), "ImgInSelect 5");
    EXPECT_EQ(writesOf(FG_TRIGGERINPOLARITY, 1), "ImgInLowActive 1");
    EXPECT_EQ(writesOf(FG_EXSYNCINVERT, 1), "ExSyncHighActive 1");
    EXPECT_EQ(writesOf(FG_EXSYNCPOLARITY, 0), "ExSyncHighActive 0");
    EXPECT_EQ(writesOf(FG_EXSYNCON, 1), "ExSyncOn 1");
    EXPECT_EQ(writesOf(FG_EXSYNCDELAY, 25.0), "ExSyncDelay 2");
    EXPECT_EQ(writesOf(FG_FLASHON, 1), "FlashEnable 1");
    EXPECT_EQ(writesOf(FG_STROBEPULSEDELAY, 130.0), "FlashDelay 13");
    EXPECT_EQ(writesOf(FG_FLASH_POLARITY, 1), "FlashHighActive 1");
    EXPECT_EQ(update(8730), "FlashHighActive 1");
    EXPECT_EQ(writesOf(FG_FLASHTIME, 1200.0), "FlashLow 119");
    EXPECT_EQ(writesOf(FG_FLASHTIME_SYNC, 0), "AAEnable_ProgFlashDuration 1");
    EXPECT_EQ(writesOf(FG_FLASHTIME_SYNC, 1), "FlashLow 249, AAEnable_ProgFlashDuration 0");
    EXPECT_EQ(writesOf(FG_LIMIT_TRIGGER_PULSES, 10), "TriggersTillStop 11");
    EXPECT_EQ(writesOf(FG_LIMIT_TRIGGER_PULSES, 2147483647), "TriggersTillStop 2147483648");
    EXPECT_EQ(writesOf(FG_LIMIT_TRIGGER_PULSES, 0), "TriggersTillStop 0");
    EXPECT_EQ(writesOf(FG_LIMIT_TRIGGER_PULSES, -5), "TriggersTillStop 18446744073709551612") << "from a file";
    EXPECT_EQ(update(FG_WIDTH), "");
    EXPECT_EQ(mResult, FG_OK);
}

TEST_F(AreaTriggerTest, FrameRateAndExposureDependOnTheMode) {
    open();
    for (const int mode : {0, 1, 3, 2, 4, 7}) {
        SCOPED_TRACE(mode);
        load(FG_TRIGGERMODE, mode);
        const bool hasOwnRate = mode == 1 || mode == 3;
        EXPECT_EQ(update(FG_FRAMESPERSEC), hasOwnRate ? "ExSyncHigh 12499" : "");
        EXPECT_EQ(update(FG_EXPOSURE), hasOwnRate ? "ExSyncLow 399" : mode == 0 ? "" : "ExSyncLow 399, ExSyncHigh 399");
    }
}

TEST_F(AreaTriggerTest, TimeBaseWritesItsRegistersAndWhatCountsInIt) {
    openInMode(1);
    EXPECT_EQ(set(FG_PRESCALER, 0.8), FG_OK);
    EXPECT_EQ(writes(), "HdLow 15, HdPeriod 49, ExSyncHigh 156249, ExSyncLow 4999, FlashDelay 0, ExSyncDelay 0");
    load(FG_TRIGGERMODE, 0);
    EXPECT_EQ(update(FG_PRESCALER), "FlashDelay 0, ExSyncDelay 0");
    // A cached 0 is one unit of a short time base; a written 0 is stored as that unit, which then makes two.
    load(FG_PRESCALER, 0.496);
    EXPECT_EQ(update(FG_EXSYNCDELAY), "ExSyncDelay 1");
    EXPECT_EQ(writesOf(FG_EXSYNCDELAY, 0.0), "ExSyncDelay 2");
    EXPECT_DOUBLE_EQ(get<double>(FG_EXSYNCDELAY), 0.496);
}

TEST_F(AreaTriggerTest, ATimeBaseBelowFifteenCyclesWritesNothing) {
    struct Row {
        double us;
        int result;
    };
    openInMode(2);
    for (const Row& row : {
             Row{0.24,  FG_OK                 }, // 15 cycles
             Row{0.224, FG_TIME_BASE_TOO_SHORT}, // 14 cycles
             Row{0.2,   FG_TIME_BASE_TOO_SHORT},
             Row{0.0,   FG_TIME_BASE_TOO_SHORT},
             Row{-10.0, FG_TIME_BASE_TOO_SHORT},
    }) {
        EXPECT_EQ(writesOf(FG_PRESCALER, row.us).empty(), row.result != FG_OK) << row.us;
        EXPECT_EQ(mResult, row.result) << row.us;
    }
    EXPECT_DOUBLE_EQ(get<double>(FG_PRESCALER), -9.984) << "625 cycles, a half rounded up";
    // The mode change goes on without it.
    EXPECT_TRUE(writesOf(FG_TRIGGERMODE, 1).starts_with("ExSyncLow"));
    EXPECT_EQ(mResult, FG_OK);
    EXPECT_EQ(load(FG_TRIGGERMODE, 0), FG_OK);
    EXPECT_EQ(load(FG_PRESCALER, 0.0), FG_OK) << "no time base is written in free run";
}

TEST_F(AreaTriggerTest, WholeBlockGoesInItsOrder) {
    open();
    load(FG_EXSYNCON, 1);
    board.clearEvents();
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_OK);
    EXPECT_EQ(writes(),
              "FlashDelay 0, ExSyncDelay 0, ImgInSelect 0, FlashDelay 0, ExSyncHighActive 0, FlashHighActive 0, "
              "ExSyncDelay 0, ExSyncOn 1, ExSyncOn 0, FlashEnable 0, ImgInLowActive 0, FlashLow 399, "
              "TriggersTillStop 0");
    load(FG_TRIGGERMODE, 1);
    board.clearEvents();
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_OK);
    EXPECT_EQ(writes(),
              "HdLow 15, HdPeriod 624, ExSyncHigh 12499, ExSyncLow 399, FlashDelay 0, ExSyncDelay 0, ImgInSelect 0, "
              "ExSyncLow 399, FlashDelay 0, ExSyncHighActive 0, FlashHighActive 0, ExSyncHigh 12499, ExSyncDelay 0, "
              "ExSyncOn 1, " +
                  kModeWrites.at(1) + ", FlashEnable 0, ImgInLowActive 0, FlashLow 399, TriggersTillStop 0");
}

TEST_F(AreaTriggerTest, WholeBlockGoesOnAfterFailures) {
    open();
    board.failNthWrite(3, -20);
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_ERROR);
    EXPECT_EQ(board.writes().size(), 13u);
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_OK);
    master().setIsArea(0, 0);
    board.clearEvents();
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_OK);
    EXPECT_THAT(board.events, IsEmpty()) << "a line camera has no area trigger";
}

}  // namespace
