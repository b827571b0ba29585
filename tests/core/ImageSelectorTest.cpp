#include "StandardApplets/grabber_basis/PSFx4/PSImageSelector.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

namespace {

class ImageSelectorTest : public ModuleTest {
protected:
    PSImageSelector& addOn(bool isDual, bool isMedium) {
        mFabrixBoard->setIsDualDesign(isDual);
        master().setIsMedium(isMedium);
        return add<PSImageSelector>();
    }
};

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
