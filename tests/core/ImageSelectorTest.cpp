#include "StandardApplets/grabber_basis/PSFx4/PSImageSelector.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ImageSelectorTest : public ModuleTest {
protected:
    PSImageSelector& addOn(bool isDual, bool isMedium) {
        mFabrixBoard->setIsDualDesign(isDual);
        master().setIsMedium(isMedium);
        return add<PSImageSelector>();
    }
};

TEST_F(ImageSelectorTest, LimitsFollowTheRegisterWidths) {
    const struct {
        int width;
        const char* period;
        const char* index;
    } rows[] = {
        {1,  "1..2 step 1 default 1",           "0..1 step 1 default 0"         },
        {0,  "1..1 step 1 default 1",           "0..0 step 1 default 0"         },
        {30, "1..1073741824 step 1 default 1",  "0..1073741823 step 1 default 0"},
 // What does not fit a signed number wraps.
        {31, "1..-2147483648 step 1 default 1", "0..2147483647 step 1 default 0"},
        {32, "1..-1 step 1 default 1",          "0..-1 step 1 default 0"        },
        {40, "1..-1 step 1 default 1",          "0..-1 step 1 default 0"        },
    };
    PSImageSelector& module = addOn(false, false);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.width);
        board.setWidth("AAImgSelectPeriod", row.width);
        board.setWidth("AAImgSelect", row.width);
        module.setLimits(0, false);
        EXPECT_EQ(limitsOf(record(25110), 0), row.period);
        EXPECT_EQ(limitsOf(record(25111), 0), row.index);
    }
}

TEST_F(ImageSelectorTest, WritesThePortsRegister) {
    addOn(true, false);
    EXPECT_EQ(set(25110, 4, 0), 0);
    EXPECT_EQ(set(25110, 65536, 1), 0);
    EXPECT_EQ(set(25111, 9, 1), 0);  // not below the period of any port: not compared
    EXPECT_EQ(set(25110, 1, 0), 0);
    EXPECT_THAT(board.writes(),
                ElementsAre("AAImgSelectPeriod 3", "ABImgSelectPeriod 65535", "ABImgSelect 9", "AAImgSelectPeriod 0"));
    EXPECT_EQ(get(25110, 1), 65536);
    EXPECT_EQ(get(25111, 0), 0);
}

TEST_F(ImageSelectorTest, OneCameraDesignServesBothPortsWithPort0sRegisters) {
    PSImageSelector& module = addOn(false, false);
    EXPECT_EQ(set(25111, 2, 1), 0);
    EXPECT_EQ(module.updateAllParameters(0), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAImgSelect 2", "AAImgSelectPeriod 0", "AAImgSelect 0"));
    board.clearEvents();
    master().setIsMedium(true);
    EXPECT_EQ(set(25111, 5), 0);
    EXPECT_EQ(load(25110, 0), 0);  // unchecked, as from a file: wraps
    EXPECT_THAT(board.writes(), ElementsAre("AAImgSelect 5", "AAImgSelect 5", "AAImgSelectPeriod 4294967295",
                                            "AAImgSelectPeriod 4294967295"));
}

TEST_F(ImageSelectorTest, MediumWritesThePortsOwnValueToBothSlots) {
    PSImageSelector& module = addOn(true, true);
    EXPECT_EQ(set(25111, 5), 0);
    EXPECT_EQ(set(25111, 5, 1), -61);
    EXPECT_EQ(module.updateAllParameters(1), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAImgSelect 5", "ABImgSelect 5", "AAImgSelectPeriod 0",
                                            "ABImgSelectPeriod 0", "AAImgSelect 0", "ABImgSelect 0"));
}

TEST_F(ImageSelectorTest, FailedWritesAreNotReported) {
    PSImageSelector& module = addOn(true, true);
    board.failWrite("AAImgSelectPeriod", -7);
    EXPECT_EQ(set(25110, 3), 0);
    EXPECT_EQ(module.updateAllParameters(0), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAImgSelectPeriod 2", "ABImgSelectPeriod 2", "AAImgSelectPeriod 2",
                                            "ABImgSelectPeriod 2", "AAImgSelect 0", "ABImgSelect 0"));
}

TEST_F(ImageSelectorTest, RefusedValuesWriteNothing) {
    PSImageSelector& module = addOn(false, false);
    for (const auto& [id, value] : {
             std::pair{25110, 0    },
             {25110, 65537},
             {25110, -1   },
             {25111, -1   },
             {25111, 65536}
    }) {
        EXPECT_EQ(set(id, value), -6000) << id << " " << value;
    }
    EXPECT_EQ(module.setImgSelect(2, 1), -61);
    EXPECT_EQ(module.getImgSelectPeriod(2), 0u);
    EXPECT_THAT(board.writes(), IsEmpty());
}

}  // namespace
