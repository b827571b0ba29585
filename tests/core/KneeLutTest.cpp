#include "tests/core/KneeLutTest.h"

#include <limits>

namespace {

TEST_F(KneeLutTest, RefusedValuesAndReadsWriteNothing) {
    for (const int id : {FG_KNEE_LUT_OFFSET, FG_KNEE_LUT_GAMMA, FG_SCALINGFACTOR_BLUE}) {
        EXPECT_EQ(set(id, maximum<double>(id) + 0.001), FG_VALUE_OUT_OF_RANGE) << id;
        EXPECT_EQ(set(id, std::numeric_limits<double>::quiet_NaN()), FG_VALUE_OUT_OF_RANGE) << id;
    }
    EXPECT_EQ(access(FG_KNEE_LUT_SAVE_LOAD_FILE), 6);
    int value = 0;
    EXPECT_EQ(Fg_getParameterWithType(handle(), FG_KNEE_LUT_SAVE_LOAD_FILE, &value, 0, FG_PARAM_TYPE_AUTO),
              FG_INVALID_ARGUMENT);
    EXPECT_THAT(board.writes(), IsEmpty());
}

TEST_F(KneeLutTest, MonochromeLoadStrobesEachSegmentFourTimes) {
    EXPECT_EQ(set(FG_KNEE_LUT_GAMMA, 1.0), 0);
    ASSERT_THAT(board.writes(), SizeIs(7168));
    EXPECT_THAT(segment(0, 7), ElementsAre("AAKneeLutStart 0", "AAKneeLutEnd 64", "AAKneeLutAddr 0", "AAKneeLutWrite 1",
                                           "AAKneeLutWrite 2", "AAKneeLutWrite 4", "AAKneeLutWrite 8"));
    EXPECT_THAT(segment(1023, 7),
                ElementsAre("AAKneeLutStart 65472", "AAKneeLutEnd 65536", "AAKneeLutAddr 1023", "AAKneeLutWrite 1",
                            "AAKneeLutWrite 2", "AAKneeLutWrite 4", "AAKneeLutWrite 8"));
}

TEST_F(KneeLutTest, ColourLoadTakesEachComponentWithItsStrobe) {
    setColor(0);
    EXPECT_EQ(set(FG_SCALINGFACTOR_GREEN, 0.5), 0);
    board.clearEvents();
    EXPECT_EQ(set(FG_SCALINGFACTOR_BLUE, 2.0), 0);
    ASSERT_THAT(board.writes(), SizeIs(10240));
    EXPECT_THAT(segment(600, 10),
                ElementsAre("AAKneeLutStart 38400", "AAKneeLutEnd 38464", "AAKneeLutAddr 600", "AAKneeLutWrite 1",
                            "AAKneeLutStart 19200", "AAKneeLutEnd 19232", "AAKneeLutWrite 2", "AAKneeLutStart 65535",
                            "AAKneeLutEnd 65535", "AAKneeLutWrite 4"));
}

TEST_F(KneeLutTest, CameraPortChangesReloadTheTables) {
    for (const int id : {FG_FORMAT, FG_PIXELDEPTH, FG_CAMERA_LINK_CAMTYP, FG_BITALIGNMENT}) {
        board.clearEvents();
        EXPECT_EQ(set(id, 10), 0);
        EXPECT_THAT(board.writes(), SizeIs(7168)) << id;
    }
    formats.depth = 10;
    board.clearEvents();
    EXPECT_EQ(knee->updateAllParameters(1), 0);
    EXPECT_EQ(segment(1023, 7)[1], "AAKneeLutEnd 1024");  // both ports of this design drive the same registers
}

TEST_F(KneeLutTest, BadCurvesAreRefused) {
    for (const size_t count : {size_t{0}, size_t{1024}, size_t{1026}}) {
        EXPECT_EQ(setCurve(std::vector<double>(count)), FG_VALUE_OUT_OF_RANGE);
    }
    EXPECT_EQ(setCurve(level(0), 3), FG_INVALID_ARGUMENT);
    EXPECT_EQ(setCurve(level(0), ~0u), FG_INVALID_ARGUMENT);
    KneeLookupTable_s noValues{};
    noValues.nrOfElements = 1025;
    EXPECT_EQ(Fg_setParameterWithType(handle(), FG_KNEE_LUT, &noValues, 0, FG_PARAM_TYPE_AUTO), FG_INVALID_ARGUMENT);
    noValues.id = 3;
    EXPECT_EQ(Fg_getParameterWithType(handle(), FG_KNEE_LUT, &noValues, 0, FG_PARAM_TYPE_AUTO), FG_INVALID_ARGUMENT);
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_EQ(curve()[512], 0.5);
}

TEST_F(KneeLutTest, CurveOfAnotherLengthLeavesTheLoadedTable) {
    std::vector<double> values(1024, 1.0);
    KneeLookupTable_s table{};
    table.value = values.data();
    table.nrOfElements = 1024;
    EXPECT_EQ(set(FG_KNEE_LUT_SCALE, 0.5), 0);
    board.clearEvents();
    EXPECT_EQ(load(FG_KNEE_LUT, table), 0);
    EXPECT_THAT(curve(), AllOf(SizeIs(1024), Each(1.0)));
    EXPECT_EQ(segment(1, 7)[0], "AAKneeLutStart 32");
    EXPECT_EQ(loadLines("[Port A]\nFG_KNEE_LUT0=0.5;\n"), 0);
    EXPECT_THAT(curve(), SizeIs(1025)) << "a line of a configuration file makes it whole";
}

}  // namespace
