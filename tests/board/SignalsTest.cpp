#include "board/StageFixture.h"

using namespace simulation;
using testing::HasSubstr;

namespace {

TEST(CcLineTest, EachLineHasFourBitsOfTheRegister) {
    constexpr uint64_t kConfiguration = 0xC4A9;
    EXPECT_EQ(CcLine::of(kConfiguration, 0), (CcLine{1, true}));
    EXPECT_EQ(CcLine::of(kConfiguration, 1), (CcLine{2, true}));
    EXPECT_EQ(CcLine::of(kConfiguration, 2), (CcLine{4, false}));
    EXPECT_EQ(CcLine::of(kConfiguration, 3), (CcLine{4, true}));
    EXPECT_FALSE(CcLine::of(0x3, 0).isConstant());
    const CcLine low = CcLine::of(0x4, 0);
    const CcLine high = CcLine::of(0xC, 0);
    EXPECT_TRUE(low.isConstant() && !low.level());
    EXPECT_TRUE(high.isConstant() && high.level());
    EXPECT_TRUE(CcLine::of(0x7, 0).isConstant()) << "no signal has this number";
}

using SignalsTest = StageFixture;

TEST_F(SignalsTest, TheConfigurationRegisterDrivesTheCcLines) {
    set({
        {"AATrg_CCConfig", 0xCCC8}
    });
    CcLine line;
    EXPECT_EQ(mBoard.ccLine(0, line), 0);
    EXPECT_EQ(line, (CcLine{0, true}));
    EXPECT_EQ(mBoard.ccLine(3, line), 0);
    EXPECT_EQ(line, (CcLine{4, true}));
    EXPECT_EQ(mBoard.ccLine(4, line), kBadArgument);
    EXPECT_EQ(Board().ccLine(0, line), kNotConfigured);
}

TEST_F(SignalsTest, DigitalInputsAreReadLiveAndStayThroughAConfiguration) {
    const int input = handleOf("AATrg_DigitalIn");
    EXPECT_EQ(read(input), 0u);
    EXPECT_EQ(mBoard.setInputs(0xA5).code, 0);
    EXPECT_EQ(read(input), 0xA5u);
    EXPECT_EQ(mBoard.writeRegister(input, 1), kReadOnly);
    const Outcome outcome = mBoard.setInputs(256);
    EXPECT_EQ(outcome.code, kBadSetting);
    EXPECT_THAT(outcome.text, HasSubstr("256"));
    EXPECT_EQ(mBoard.configure(&mStages), 0);
    EXPECT_EQ(read(input), 0xA5u);
    const Design narrow{2626, {{"AATrg_DigitalIn", 4, 2, 0}}, {}};
    EXPECT_EQ(mBoard.configure(&narrow), 0);
    EXPECT_EQ(read(1), 5u) << "as many inputs as the register has bits";
    EXPECT_EQ(mBoard.configure(&mDesign), 0);
    EXPECT_EQ(mBoard.setInputs(255).code, 0);
    for (int handle = 1; handle <= 6; ++handle) EXPECT_EQ(read(handle), 0u) << "without the register";
}

TEST_F(SignalsTest, DigitalOutputsAreSeen) {
    EXPECT_EQ(mBoard.outputs(), 0);
    set({
        {"AATrg_DigitalOut", 2}
    });
    EXPECT_EQ(mBoard.outputs(), 2);
    set({
        {"AATrg_DigitalOut", 7}
    });
    EXPECT_EQ(mBoard.outputs(), 3) << "there are two";
    EXPECT_EQ(mBoard.configure(&mDesign), 0);
    EXPECT_EQ(mBoard.outputs(), 0) << "without the register";
    EXPECT_EQ(Board().outputs(), kNotConfigured);
}

}  // namespace
