// Camera control lines, digital inputs and outputs: RSCCSignal and PSCCSignal.
#include "StandardApplets/grabber_basis/PSFx4/PSCCSignal.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

namespace {

using Lines = std::array<int, 4>;

class CCSignalTest : public ModuleTest {
protected:
    PSCCSignal& addModule() {
        PSCCSignal& module = add<PSCCSignal>();
        board.clearEvents();
        return module;
    }
    PSCCSignal& addMediumModule() {
        master().setIsMedium(true);
        return addModule();
    }
    int setLines(Lines lines, int port = 0) {
        return Fg_setParameterWithType(handle(), FG_CCSEL, &lines, port, FG_PARAM_TYPE_AUTO);
    }
};

TEST_F(CCSignalTest, EverySourceHasItsNibbleOnEveryLine) {
    addMediumModule();
    const std::array nibbles{0x0, 0x1, 0x2, 0x3, 0x4, 0xC, 0x8, 0x9, 0xA};
    for (int source = 0; source < 9; ++source) {
        SCOPED_TRACE(source);
        for (int line = 0; line < 4; ++line) {
            ASSERT_EQ(setLines({5, 5, 5, 5}), 0);
            board.clearEvents();
            EXPECT_EQ(set(FG_CCSEL0 + line, source), 0);
            const int expected = (0xCCCC & ~(0xF << 4 * line)) | nibbles[static_cast<size_t>(source)] << 4 * line;
            EXPECT_THAT(board.writes(), ElementsAre("AATrg_CCConfig " + std::to_string(expected)));
            EXPECT_EQ(get(FG_CCSEL0 + line), source);
        }
    }
}

TEST_F(CCSignalTest, AllLinesAreSetAtOnceOrNotAtAll) {
    PSCCSignal& module = addMediumModule();
    EXPECT_EQ(setLines({3, 1, 8, 4}), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AATrg_CCConfig 18963"));
    board.clearEvents();
    for (const Lines& lines : {
             Lines{0,  1,       2, 9},
             Lines{-1, 0,       0, 0},
             Lines{0,  1 << 30, 0, 0}
    }) {
        EXPECT_EQ(setLines(lines), -6000);
    }
    for (int source : {-1, 9}) EXPECT_EQ(set(FG_CCSEL1, source), -6000);
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_THAT(get<Lines>(FG_CCSEL), ElementsAre(3, 1, 8, 4));
    const int source = 0;
    EXPECT_EQ(module.checkParam(FG_CCSEL0, &source, 0), -1);
}

TEST_F(CCSignalTest, InputsAreReadWheneverTheyAreAskedFor) {
    PSCCSignal& module = addMediumModule();
    board.setValue("AATrg_DigitalIn", 0x12345678A5);
    EXPECT_EQ(get<unsigned>(FG_DIGIO_INPUT), 0x345678A5u);
    board.setValue("AATrg_DigitalIn", 7);
    EXPECT_EQ(get<unsigned>(FG_DIGIO_INPUT, 1), 7u);
    EXPECT_THAT(board.events, ElementsAre("read AATrg_DigitalIn", "read AATrg_DigitalIn"));
    board.failRead("AATrg_DigitalIn", -3);
    EXPECT_EQ(get<unsigned>(FG_DIGIO_INPUT), 0xFFFFFFFFu);
    EXPECT_EQ(set(FG_DIGIO_INPUT, 1), -8010);
    EXPECT_EQ(load(FG_DIGIO_INPUT, 1), -1);
    EXPECT_EQ(module.updateParameter(0, FG_DIGIO_INPUT), -1);
}

TEST_F(CCSignalTest, FullUpdateOfAMediumCameraSetsTheSecondConnectorHigh) {
    PSCCSignal& module = addMediumModule();
    EXPECT_EQ(module.updateAllParameters(1), 0);
    EXPECT_EQ(module.updateAllParameters(0), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AATrg_DigitalOut 3", "ABTrg_CCConfig 52428", "AATrg_DigitalOut 3",
                                            "AATrg_CCConfig 52416"));
    const std::array sources{CC_CLK, CC_CLK, CC_CLK, CC_CLK};
    EXPECT_EQ(module.setCCSel(1, sources.data()), 0);
    board.clearEvents();
    for (int id = FG_CCSEL; id <= FG_CCSEL3; ++id) EXPECT_EQ(module.updateParameter(1, id), 0);
    EXPECT_THAT(board.writes(), ElementsAreArray(std::vector<std::string>(5, "ABTrg_CCConfig 52428")));
    EXPECT_EQ(set(FG_CCSEL0, 6), 0);
    EXPECT_EQ(board.value("AATrg_CCConfig"), 52424u);
    EXPECT_EQ(set(FG_CCSEL0, 6, 1), -61);
}

}  // namespace
