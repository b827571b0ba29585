#include "board/StageFixture.h"

using namespace simulation;

namespace {

using SignalsTest = StageFixture;

TEST_F(SignalsTest, TheConfigurationRegisterDrivesTheCcLines) {
    set("AATrg_CCConfig", 0xCCC8);
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
}

TEST_F(SignalsTest, DigitalOutputsAreSeen) {
    EXPECT_EQ(mBoard.outputs(), 0);
    set("AATrg_DigitalOut", 2);
    EXPECT_EQ(mBoard.outputs(), 2);
    set("AATrg_DigitalOut", 7);
    EXPECT_EQ(mBoard.outputs(), 3) << "there are two";
    EXPECT_EQ(mBoard.configure(&mDesign), 0);
    EXPECT_EQ(mBoard.outputs(), 0) << "without the register";
    EXPECT_EQ(Board().outputs(), kNotConfigured);
}

}  // namespace
