// The parameter side of the area trigger: what a user sees, and how the values bound each other.
#include <array>

#include "tests/core/AreaTriggerFixture.h"

namespace {

using AreaTriggerParameterTest = AreaTriggerFixture;

TEST_F(AreaTriggerParameterTest, AccessFollowsTheModeOfThePort) {
    constexpr std::array kModes{0, 1, 3, 2, 4, 7, 5};
    const std::pair<int, const char*> rows[] = {
        {FG_FRAMESPERSEC,                    "1771111"},
        {FG_TRIGGERMODE,                     "7777777"},
        {FG_TRIGGERINSRC,                    "1117111"},
        {FG_TRIGGERINPOLARITY,               "1117111"},
        {FG_EXSYNCINVERT,                    "1777771"},
        {FG_EXSYNCON,                        "1777771"},
        {FG_EXSYNCDELAY,                     "1777771"},
        {FG_EXSYNCPOLARITY,                  "1777771"},
        {FG_FLASHON,                         "1777771"},
        {FG_STROBEPULSEDELAY,                "1777771"},
        {FG_FLASHTIME,                       "1777771"},
        {FG_FLASHTIME_SYNC,                  "1777771"},
        {FG_SENDSOFTWARETRIGGER,             "0000660"},
        {FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, "1111111"},
        {FG_LIMIT_TRIGGER_PULSES,            "7777777"},
        {FG_EXPOSURE,                        "1777771"},
        {FG_PRESCALER,                       "1777771"},
        {FG_FLASH_POLARITY,                  "1777771"},
    };
    open();
    for (size_t column = 0; column < kModes.size(); ++column) {
        load(FG_TRIGGERMODE, kModes[column]);
        for (const auto& [id, bits] : rows) {
            EXPECT_EQ(access(id), bits[column] - '0') << id << " in mode " << kModes[column];
            EXPECT_EQ(access(id, 1), bits[0] - '0') << "port 1 stays in mode 0";
        }
    }
    master().setIsArea(0, 0);
    mTrigger->setFlags(0);
    EXPECT_EQ(record(FG_EXPOSURE).access.writeToConfigFile, (std::array{0, 1})) << "a line camera saves nothing of it";
}

TEST_F(AreaTriggerParameterTest, TimesAreStoredAsTheHardwareProducesThem) {
    openInMode(1);
    struct Row {
        int id;
        double written, stored;
    };
    for (const Row& row : {
             Row{FG_FRAMESPERSEC,     30.0,   30.003000300030003},
             Row{FG_EXSYNCDELAY,      25.0,   20.0              },
             Row{FG_STROBEPULSEDELAY, 29.5,   30.0              },
             Row{FG_FLASHTIME,        1234.5, 1230.0            },
             Row{FG_PRESCALER,        11.0,   11.008            },
    }) {
        EXPECT_EQ(set(row.id, row.written), FG_OK) << row.id;
        EXPECT_DOUBLE_EQ(get<double>(row.id), row.stored) << row.id;
    }
}

TEST_F(AreaTriggerParameterTest, TheFlashFollowsTheExposureUntilItGetsATimeOfItsOwn) {
    openInMode(1);
    set(FG_PRESCALER, 0.8);
    EXPECT_EQ(set(FG_EXPOSURE, 1001), FG_OK);
    EXPECT_EQ(get(FG_EXPOSURE), 1000);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 1000.8) << "of the exposure that was asked for";
    EXPECT_THAT(board.eventsOf("write AATrgArea_FlashLow"), IsEmpty());
    EXPECT_EQ(board.writes().back(), "AATrgArea_ExSyncLow 1249");

    board.clearEvents();
    EXPECT_EQ(set(FG_FLASHTIME, 200.0), FG_OK);
    EXPECT_EQ(get(FG_FLASHTIME_SYNC), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AATrgArea_FlashLow 249"));
    set(FG_EXPOSURE, 2000);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 200.0);

    EXPECT_EQ(set(FG_FLASHTIME_SYNC, 1), FG_OK);
    EXPECT_DOUBLE_EQ(get<double>(FG_FLASHTIME), 2000.0);
}

TEST_F(AreaTriggerParameterTest, InvertAndPolarityAreOneFlag) {
    openInMode(1);
    EXPECT_EQ(set(FG_EXSYNCINVERT, 1), FG_OK);
    EXPECT_EQ(get(FG_EXSYNCPOLARITY), 1);
    EXPECT_EQ(set(FG_EXSYNCPOLARITY, 0), FG_OK);
    EXPECT_EQ(get(FG_EXSYNCINVERT), 0);
    load(FG_EXSYNCINVERT, 256);
    EXPECT_EQ(get(FG_EXSYNCPOLARITY), 1) << "every number but 0";
    load(FG_FLASHTIME_SYNC, 2);
    EXPECT_EQ(get(FG_FLASHTIME_SYNC), 0) << "1 alone";
}

TEST_F(AreaTriggerParameterTest, ValuesBoundEachOther) {
    openInMode(1);
    EXPECT_EQ(set(FG_EXPOSURE, 8000), FG_OK);
    EXPECT_DOUBLE_EQ(maximum<double>(FG_FRAMESPERSEC), 124.68827930174564);
    EXPECT_EQ(set(FG_FRAMESPERSEC, 100.0), FG_OK);
    EXPECT_EQ(maximum(FG_EXPOSURE), 9980);
    EXPECT_EQ(set(FG_EXPOSURE, 9981), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(set(FG_EXPOSURE, 100), FG_OK);
    EXPECT_DOUBLE_EQ(maximum<double>(FG_PRESCALER), 100.0) << "the time base ends at the exposure";
    EXPECT_EQ(set(FG_PRESCALER, 0.496), FG_OK);
    EXPECT_EQ(minimum(FG_EXPOSURE), 0);
    EXPECT_EQ(maximum(FG_EXPOSURE), 9999);
    EXPECT_EQ(set(FG_EXPOSURE, 0), FG_OK);
    EXPECT_EQ(board.writes().back(), "AATrgArea_ExSyncLow 4294967295");
    EXPECT_EQ(get(FG_EXPOSURE), 0);
}

TEST_F(AreaTriggerParameterTest, LongTimesHoldTheTimeBaseUp) {
    board.setWidth("AATrgArea_ExSyncDelay", 8);
    openInMode(1);
    EXPECT_DOUBLE_EQ(minimum<double>(FG_PRESCALER), 0.496);
    EXPECT_EQ(set(FG_EXSYNCDELAY, 2550.0), FG_OK);
    EXPECT_DOUBLE_EQ(minimum<double>(FG_PRESCALER), 10.032) << "above the present time base";
    EXPECT_EQ(set(FG_PRESCALER, 10.0), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(set(FG_EXSYNCDELAY, 0.0), FG_OK);
    EXPECT_EQ(set(FG_PRESCALER, 0.496), FG_OK);
    EXPECT_EQ(set(FG_PRESCALER, 0.495), FG_VALUE_OUT_OF_RANGE);
}

}  // namespace
