#include "board/StageFixture.h"
#include "simulation/board/ImageSelection.h"

using namespace simulation;

namespace {

TEST(ImageSelectionRuleTest, TheRegistersCountThePeriodFromZero) {
    const ImageSelection every = ImageSelection::of({0, 0});
    EXPECT_TRUE(every.passesAny() && every.passes(1) && every.passes(2));
    const ImageSelection third = ImageSelection::of({3, 2});
    for (uint64_t number = 1; number < 20; ++number) EXPECT_EQ(third.passes(number), number % 4 == 3) << number;
    EXPECT_TRUE(ImageSelection::of({65535, 65535}).passesAny());
    EXPECT_FALSE(ImageSelection::of({3, 4}).passesAny());
    EXPECT_FALSE(ImageSelection::of({0, 1}).passesAny());
    EXPECT_EQ(ImageSelection::of({UINT64_MAX, 0}).period, 4294967296u);
}

using ImageSelectionTest = StageFixture;

TEST_F(ImageSelectionTest, NothingArrivesFromBeyondThePeriod) {
    set("AAImgSelectPeriod", 1);
    set("AAImgSelect", 2);
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(start(1), 0);
    EXPECT_EQ(buffers.wait(1, 1), kTimeOut);
    set("AAImgSelectPeriod", 2);
    EXPECT_EQ(buffers.wait(1, 20), 1);
    EXPECT_EQ(buffers.ofPicture(1)->frame, 3u) << "time stood still";
}

}  // namespace
