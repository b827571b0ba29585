// Software triggers, and the ranges of the area trigger that follow from register widths.
#include "tests/core/AreaTriggerFixture.h"

namespace {

class SoftwareTriggerTest : public AreaTriggerFixture {
protected:
    /// \return what a trigger reads and writes
    std::string eventsOf(int triggers) {
        board.clearEvents();
        mResult = set(FG_SENDSOFTWARETRIGGER, triggers);
        return textOf(board.events);
    }
};

TEST_F(SoftwareTriggerTest, ATriggerIsOnePulse) {
    openInMode(4);
    EXPECT_EQ(eventsOf(1), "read ImgBusy, write ImgSwSet 0, write ImgSwSet 1, write ImgSwSet 1, write ImgSwSet 0");
    EXPECT_EQ(mResult, FG_OK);
    board.setValue("AATrg_ImgBusy", 1);
    EXPECT_EQ(eventsOf(1), "read ImgBusy");
    EXPECT_EQ(mResult, FG_SOFTWARE_TRIGGER_BUSY);
    EXPECT_EQ(lastError(), FG_SOFTWARE_TRIGGER_BUSY);
    board.failRead("AATrg_ImgBusy", -20);
    EXPECT_EQ(set(FG_SENDSOFTWARETRIGGER, 1), FG_OK) << "a busy flag that cannot be read";
    board.failWrite("AATrg_ImgSwSet", -20);
    EXPECT_EQ(set(FG_SENDSOFTWARETRIGGER, 1), FG_OK) << "the writes are not looked at";
}

TEST_F(SoftwareTriggerTest, TheQueueTakesWhatItHasRoomFor) {
    struct Row {
        unsigned fillLevel;
        uint64_t busy;
        int triggers;
        int result;
    };
    openInMode(7);
    for (const Row& row : {
             Row{0,   0, 1,   FG_OK                   },
             Row{0,   1, 1,   8803                    },
             Row{0,   2, 1,   FG_OK                   }, // busy is exactly 1
             Row{0,   0, 255, FG_OK                   },
             Row{0,   0, 256, FG_VALUE_OUT_OF_RANGE   },
             Row{1,   0, 255, FG_SOFTWARE_TRIGGER_BUSY},
             Row{250, 0, 5,   8803                    },
             Row{250, 0, 6,   FG_SOFTWARE_TRIGGER_BUSY},
             Row{255, 0, 1,   FG_SOFTWARE_TRIGGER_BUSY},
    }) {
        SCOPED_TRACE(testing::Message() << row.triggers << " behind " << row.fillLevel);
        board.setValue("AATrgArea_SwTrgQueueFillLevel", row.fillLevel);
        board.setValue("AATrg_ImgBusy", row.busy);
        board.clearEvents();
        EXPECT_EQ(set(FG_SENDSOFTWARETRIGGER, row.triggers), row.result);
        EXPECT_EQ(writes(), row.result < 0 ? "" : "SwTrgQueueTriggers " + std::to_string(row.triggers));
        EXPECT_EQ(lastError(), row.result);
    }
}

TEST_F(SoftwareTriggerTest, TheQueueIsAskedBeforeTheBusyFlag) {
    openInMode(7);
    board.setValue("AATrgArea_SwTrgQueueFillLevel", 3);
    EXPECT_EQ(get(FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL), 3);
    EXPECT_EQ(eventsOf(2), "read SwTrgQueueFillLevel, read ImgBusy, write SwTrgQueueTriggers 2");
    board.failWrite("AATrgArea_SwTrgQueueTriggers", -20);
    EXPECT_EQ(set(FG_SENDSOFTWARETRIGGER, 2), 1);
    EXPECT_EQ(lastError(), 1);
    board.setValue("AATrgArea_SwTrgQueueFillLevel", 255);
    EXPECT_EQ(eventsOf(1), "read SwTrgQueueFillLevel");
}

TEST_F(SoftwareTriggerTest, OtherModesRefuse) {
    open();
    for (const int mode : {0, 1, 2, 3}) {
        load(FG_TRIGGERMODE, mode);
        EXPECT_EQ(eventsOf(1), "") << mode;
        EXPECT_EQ(mResult, FG_NOT_WRITABLE) << mode;
        EXPECT_EQ(load(FG_SENDSOFTWARETRIGGER, 1), FG_TRIGGER_MODE_MISMATCH) << mode;
        EXPECT_THAT(board.events, IsEmpty()) << mode;
    }
}

}  // namespace
