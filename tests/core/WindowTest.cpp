#include "StandardApplets/grabber_basis/PSFx4/PSWindow.h"
#include "tests/core/GrabberTest.h"

namespace {

/// The window as the applet makes it: one camera on both connectors, 16 pixels a clock.
class WindowTest : public ModuleTest {
protected:
    WindowTest() {
        master().setIsMedium(true);
        master().setCameraCategory(30, 0);
    }
    PSWindow& makeWindow(int maxWidth = 2147483647) { return add<PSWindow>(maxWidth, 1024, 1024, -1); }
};

TEST_F(WindowTest, RegistersTakeUnitsAndBothSlotsAreWritten) {
    PSWindow& window = makeWindow();
    struct Case {
        int id, value;
        const char* write;
    };
    for (const Case& c : {
             Case{100, 32,    "AAAreaWidth 1"     },
             {100, 1024,  "AAAreaWidth 63"    },
             {100, 65536, "AAAreaWidth 4095"  },
             {200, 1,     "AAAreaHeight 0"    },
             {200, 65535, "AAAreaHeight 65534"},
             {300, 32,    "AAAreaXPos 2"      },
             {300, 65536, "AAAreaXPos 4096"   },
             {400, 65535, "AAAreaYPos 65535"  }
    }) {
        board.clearEvents();
        EXPECT_EQ(set(c.id, c.value), 0);
        EXPECT_THAT(board.writes(), ElementsAre(c.write, c.write));
        EXPECT_EQ(get(c.id), c.value);
    }
    board.clearEvents();
    EXPECT_EQ(window.updateAllParameters(0), 0);
    EXPECT_THAT(board.writes(),
                ElementsAre("AAAreaWidth 4095", "AAAreaWidth 4095", "AAAreaHeight 65534", "AAAreaHeight 65534",
                            "AAAreaXPos 4096", "AAAreaXPos 4096", "AAAreaYPos 65535", "AAAreaYPos 65535"));
}

TEST_F(WindowTest, RefusedValuesWriteNothing) {
    makeWindow();
    struct Case {
        int id, value, code;
    };
    for (const Case& c : {
             Case{100, 31,         -6000},
             {100, 16,         -6000},
             {100, 0,          -6000},
             {100, -1024,      -6000},
             {100, 65552,      -6000},
             {100, 65537,      -6000},
             {100, 100,        -7080},
             {100, 1023,       -7080},
             {200, 0,          -6000},
             {200, 65536,      -6000},
             {300, -16,        -6000},
             {300, 65552,      -6000},
             {300, 1,          -7080},
             {400, -1,         -6000},
             {400, 65536,      -6000},
             {400, 2147483647, -6000}
    }) {
        SCOPED_TRACE(std::to_string(c.id) + " " + std::to_string(c.value));
        const int before = get(c.id);
        EXPECT_EQ(set(c.id, c.value), c.code);
        EXPECT_EQ(get(c.id), before);
    }
    EXPECT_EQ(set(FG_WIDTH, 512, 1), -61);
    EXPECT_THAT(board.writes(), IsEmpty());
}

TEST_F(WindowTest, FormatRewritesTheWidthAndUnknownIdentifiersAreRefused) {
    PSWindow& window = makeWindow();
    EXPECT_EQ(window.updateParameter(0, 700), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAAreaWidth 63", "AAAreaWidth 63"));
    board.clearEvents();
    unsigned value = 5;
    EXPECT_EQ(window.getParamFromRs(700, &value, 0), -2070);
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_EQ(value, 5U);
}

TEST_F(WindowTest, StepStaysAndConversionFollowsTheFactor) {
    PSWindow& window = makeWindow();
    master().setCameraCategory(12, 0);
    window.addStandardPS(0, false);
    EXPECT_EQ(record(FG_WIDTH).data.intData->step[0], 16);
    EXPECT_EQ(minimum(FG_WIDTH), 32);
    EXPECT_EQ(maximum(FG_WIDTH), 32768);
    EXPECT_EQ(set(FG_WIDTH, 1024), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAAreaWidth 127", "AAAreaWidth 127"));
    board.clearEvents();
    master().setCameraCategory(16, 0);
    window.addStandardPS(0, false);
    EXPECT_EQ(minimum(FG_HEIGHT), 3);
    EXPECT_EQ(set(FG_HEIGHT, 9), 0);
    EXPECT_EQ(set(FG_HEIGHT, 10), -7080);
    EXPECT_THAT(board.writes(), ElementsAre("AAAreaHeight 2", "AAAreaHeight 2"));
}

}  // namespace
