// The register side of the area trigger: what is written for each parameter and mode, on each design.
#include <chrono>
#include <limits>
#include <map>

#include "tests/core/AreaTriggerFixture.h"

namespace {

using testing::IsEmpty;

class AreaTriggerTest : public AreaTriggerFixture {};

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

TEST_F(AreaTriggerTest, ArmingTheSoftwareTriggerTakesAMillisecond) {
    open();
    const auto start = std::chrono::steady_clock::now();
    set(FG_TRIGGERMODE, 4);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1));
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

TEST_F(AreaTriggerTest, FailedWritesComeBackInTheirOwnWays) {
    struct Row {
        int mode, id;
        const char* failing;
        int result;
    };
    open();
    for (const Row& row : {
             Row{1, FG_FRAMESPERSEC,      "AATrgArea_ExSyncHigh",       -20},
             Row{1, FG_EXPOSURE,          "AATrgArea_ExSyncLow",        -1 },
             Row{2, FG_EXPOSURE,          "AATrgArea_ExSyncHigh",       -1 },
             Row{0, FG_TRIGGERINSRC,      "AATrg_ImgInSelect",          -1 },
             Row{0, FG_TRIGGERINPOLARITY, "AATrg_ImgInLowActive",       -20},
             Row{0, FG_FLASHTIME_SYNC,    "AATrgArea_FlashLow",         0  },
             Row{0, FG_FLASHTIME_SYNC,    "AAEnable_ProgFlashDuration", -20},
             Row{1, FG_PRESCALER,         "AATrgArea_HdLow",            0  },
             Row{1, FG_PRESCALER,         "AATrgArea_HdPeriod",         0  },
    }) {
        SCOPED_TRACE(row.failing);
        load(FG_TRIGGERMODE, row.mode);
        board.failWrite(row.failing, -20);
        update(row.id);
        EXPECT_EQ(mResult, row.result);
        board.failWrite(row.failing, 0);
    }
    load(FG_TRIGGERMODE, 4);
    board.failWrite("AATrgArea_ExSyncLow", -20);
    board.failWrite("AATrgArea_ExSyncHigh", -20);
    EXPECT_EQ(update(FG_EXPOSURE), "ExSyncLow 399, ExSyncHigh 399");
    EXPECT_EQ(mResult, -2);
}

TEST_F(AreaTriggerTest, ExposureOfATriggeredModeIsRoundedLowAndCutHigh) {
    openInMode(2);
    load(FG_PRESCALER, 8.0);
    mTrigger->setExposureTime(0, 4004);  // 500.5 units
    EXPECT_EQ(update(FG_EXPOSURE), "ExSyncLow 500, ExSyncHigh 499");
    mTrigger->setExposureTime(0, 0);
    EXPECT_EQ(update(FG_EXPOSURE), "ExSyncLow 4294967295, ExSyncHigh 4294967295");
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

TEST_F(AreaTriggerTest, ValuesOfABrokenFileAreDefined) {
    openInMode(1);
    load(FG_PRESCALER, 0.0);
    for (const int id : {FG_FRAMESPERSEC, FG_EXSYNCDELAY, FG_STROBEPULSEDELAY, FG_FLASHTIME}) {
        for (const double value : {0.0, -1.0, 1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
            EXPECT_EQ(load(id, value), FG_OK) << id << " " << value;
        }
    }
    load(FG_PRESCALER, 10.0);
    EXPECT_EQ(writesOf(FG_FRAMESPERSEC, 0.0), "ExSyncHigh 4294967295");
    EXPECT_EQ(maximum(FG_EXPOSURE), 10485760);
    EXPECT_EQ(writesOf(FG_EXPOSURE, -1), "ExSyncLow 4294967295");
    EXPECT_EQ(get(FG_EXPOSURE), 4) << "429496730 units, wrapped";
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

// ---- Other designs and ports

TEST_F(AreaTriggerTest, OptionalRegistersMayBeMissing) {
    removeQueue();
    removeFlashTime();
    open();
    EXPECT_EQ(mTrigger->getRegisterInitSuccess(), FG_OK);
    for (unsigned port : {0u, 1u, 2u}) {
        EXPECT_FALSE(mTrigger->isSoftwareTriggerQueueAvailable(port));
        EXPECT_FALSE(mTrigger->isFlashTimeAvailable(port));
        EXPECT_EQ(mTrigger->isLimitTriggerPulsesAvailable(port), port < 2);
    }
    EXPECT_EQ(update(FG_FLASHTIME_SYNC), "<0> 399") << "no switch to write";
    EXPECT_EQ(mResult, FG_OK);
    for (const int mode : {1, 2, 4}) {
        EXPECT_EQ(writesOf(FG_TRIGGERMODE, mode).find("SwTrg"), std::string::npos) << mode;
        EXPECT_EQ(mResult, FG_OK) << mode;
    }
    EXPECT_EQ(load(FG_TRIGGERMODE, 7), FG_TRIGGER_MODE_MISMATCH);
    EXPECT_EQ(get(FG_TRIGGERMODE), 4);
}

TEST_F(AreaTriggerTest, EitherRegisterMakesAFlashTime) {
    board.removeRegister("AAEnable_ProgFlashDuration");
    open();
    EXPECT_TRUE(mTrigger->isFlashTimeAvailable(0));
    EXPECT_EQ(update(FG_FLASHTIME_SYNC), "FlashLow 399");
}

TEST_F(AreaTriggerTest, ADesignWithoutAnyTriggerRegisterOpens) {
    board.removeAllRegisters();
    open();
    EXPECT_EQ(mTrigger->getRegisterInitSuccess(), FG_REGISTER_NOT_FOUND);
    EXPECT_EQ(mTrigger->updateAllParameters(0), FG_ERROR);
    for (const int mode : {1, 2, 4}) load(FG_TRIGGERMODE, mode);
    EXPECT_EQ(load(FG_SENDSOFTWARETRIGGER, 1), FG_OK);
    EXPECT_EQ(maximum<double>(FG_EXSYNCDELAY), 0.0);
    EXPECT_EQ(maximum(FG_EXPOSURE), 10);
}

TEST_F(AreaTriggerTest, TwoCamerasShareTimeBaseAndMasterSync) {
    makeTwoCameras();
    open();
    load(FG_TRIGGERMODE, 1, 1);
    EXPECT_EQ(update(FG_PRESCALER, 1),
              "HdLow 15, HdPeriod 624, FlashDelay 0, ExSyncDelay 0, ABTrgArea_ExSyncHigh 12499, "
              "ABTrgArea_ExSyncLow 399, ABTrgArea_FlashDelay 0, ABTrgArea_ExSyncDelay 0");
    const auto masterSync = [&](int mode, unsigned port) {
        board.clearEvents();
        EXPECT_EQ(load(FG_TRIGGERMODE, mode, port), FG_OK);
        return textOf(board.eventsOf("write AATrgArea_MasterSyncA "));
    };
    EXPECT_EQ(masterSync(3, 0), "1");
    EXPECT_EQ(masterSync(1, 0), "0");
    EXPECT_EQ(masterSync(7, 1), "0");
    EXPECT_EQ(board.writes().back(), "ABTrgArea_ExSyncOn 0");
    EXPECT_EQ(masterSync(0, 0), "");
    master().setActivePort(1);
    EXPECT_EQ(masterSync(3, 0), "") << "the generator is port A's";
    board.failWrite("AATrgArea_MasterSyncA", -20);
    EXPECT_EQ(load(FG_TRIGGERMODE, 2), -1);
}

TEST_F(AreaTriggerTest, PortOneOfAOneCameraDesignWritesItsOwnValuesIntoTheSameRegisters) {
    open();
    EXPECT_EQ(writesOf(FG_LIMIT_TRIGGER_PULSES, 5, 1), "TriggersTillStop 6");
    EXPECT_EQ(get(FG_LIMIT_TRIGGER_PULSES, 0), 0);
    EXPECT_EQ(update(FG_LIMIT_TRIGGER_PULSES, 0), "TriggersTillStop 0");
}

TEST_F(AreaTriggerTest, APortThatDoesNotExistIsRefused) {
    PSAreaTrigger& trigger = open();
    int memory[2] = {-5, -5};
    for (const int id : {FG_TRIGGERMODE, FG_EXPOSURE, FG_PRESCALER, FG_FLASHTIME_SYNC, FG_SENDSOFTWARETRIGGER}) {
        EXPECT_EQ(trigger.updateParameter(2, id), FG_INVALID_PORT) << id;
        EXPECT_EQ(trigger.setParamToRs(id, memory, 2), FG_INVALID_PORT) << id;
        EXPECT_EQ(trigger.getParamFromRs(id, memory, 2), FG_INVALID_PORT) << id;
    }
    EXPECT_EQ(memory[0], -5);
    EXPECT_EQ(trigger.updateAllParameters(2), FG_INVALID_PORT);
    EXPECT_EQ(trigger.sendSoftwareTrigger(2, 1), FG_INVALID_PORT);
    EXPECT_EQ(trigger.getTriggerMode(2), FG_INVALID_PORT);
    EXPECT_EQ(trigger.setTriggerMode(2, 1), FG_INVALID_PORT);
    EXPECT_EQ(trigger.setFramesPerSec(2, 1.0), FG_INVALID_PORT);
    EXPECT_EQ(trigger.setExSyncInvert(2, true), FG_INVALID_ARGUMENT);
    EXPECT_EQ(trigger.setHdSync(2, 1.0), FG_OK);
    EXPECT_EQ(trigger.getHdSync(0), 10.0);
    EXPECT_FALSE(trigger.getSwTrgBusy(2));
    EXPECT_EQ(trigger.getSwTrgQueueFillLevel(2), 0u);
    EXPECT_EQ(trigger.getParamRegisterWidth(FG_EXPOSURE, 2), 0u);
    EXPECT_THAT(board.events, IsEmpty());
}

}  // namespace
