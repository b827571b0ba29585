#include "tests/core/KneeLutTest.h"

#include <limits>

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

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

TEST_F(KneeLutTest, ColourCamerasShowComponentGains) {
    setColor(1);
    knee->setFlags(0);
    knee->setFlags(1);
    EXPECT_EQ(record(FG_SCALINGFACTOR_GREEN).access.visibilityFlag, (std::array{0, 1}));
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

TEST_F(KneeLutTest, ComponentGainsDoNothingForMonochromeCameras) {
    EXPECT_EQ(set(FG_SCALINGFACTOR_RED, 0.0), 0);
    EXPECT_EQ(segment(1, 7)[0], "AAKneeLutStart 64");
}

TEST_F(KneeLutTest, WhatIsNoNumberLoadsAllBitsSet) {
    EXPECT_EQ(setCurve(level(std::numeric_limits<double>::quiet_NaN())), 0);
    EXPECT_THAT(segment(1023, 7)[0], "AAKneeLutStart 0");
    EXPECT_THAT(segment(1023, 7)[1], "AAKneeLutEnd 18446744073709551615");
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

TEST_F(KneeLutTest, RefusedWritesDoNotKeepSegmentsFromLoading) {
    board.failNthWrite(5, -77);
    EXPECT_EQ(set(FG_KNEE_LUT_SCALE, 1.0), -77);
    EXPECT_THAT(board.writes(), SizeIs(7168));
    board.failWrite("AAKneeLutEnd", -78);
    board.failNthWrite(7168, -79);
    board.clearEvents();
    EXPECT_EQ(set(FG_KNEE_LUT_SCALE, 1.0), -78);
    EXPECT_THAT(board.writes(), SizeIs(7168));
}

TEST_F(KneeLutTest, CurvesAreCopiedInAndOut) {
    std::vector<double> values = level(0.25);
    EXPECT_EQ(setCurve(values), 0);
    EXPECT_EQ(segment(7, 7)[0], "AAKneeLutStart 16384");
    std::vector<double> read(1025);
    KneeLookupTable_s table{};
    table.value = read.data();
    EXPECT_EQ(Fg_getParameterWithType(handle(), FG_KNEE_LUT, &table, 0, FG_PARAM_TYPE_AUTO), 0);
    EXPECT_EQ(read, values);
    EXPECT_EQ(table.value, read.data());
    EXPECT_EQ(table.nrOfElements, 1025u);
    EXPECT_EQ(table.format, 5u);
    EXPECT_EQ(table.number, 6);
    table = {};
    table.id = 2;
    EXPECT_EQ(Fg_getParameterWithType(handle(), FG_KNEE_LUT, &table, 1, FG_PARAM_TYPE_AUTO), 0);
    EXPECT_EQ(table.id, 2u);
    EXPECT_EQ(table.format, 3u);
    EXPECT_EQ(table.value, nullptr);
    EXPECT_EQ(curve(2, 1)[1], 0.0009765625);
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
}

TEST_F(KneeLutTest, PortsThatDoNotExistAndOtherParametersAreRefused) {
    double value = 0;
    for (const unsigned port : {2u, ~0u}) {
        EXPECT_EQ(knee->saveParmeter(static_cast<int>(port), FG_KNEE_LUT, "K", nullptr), FG_INVALID_PORT);
        EXPECT_EQ(knee->loadParameter(static_cast<int>(port), FG_KNEE_LUT, nullptr, nullptr), FG_INVALID_PORT);
        EXPECT_EQ(knee->getLut(port, 0), nullptr);
    }
    EXPECT_EQ(knee->checkParam(FG_KNEE_LUT_GAMMA, &value, 0), FG_INVALID_ARGUMENT);
    EXPECT_EQ(knee->loadParameter(0, FG_KNEE_LUT_GAMMA, nullptr, nullptr), FG_INVALID_ARGUMENT);
    EXPECT_THAT(board.writes(), IsEmpty());
}

TEST(KneeTwoCameraTest, SecondPortHasItsOwnRegisters) {
    FakeBoard board;
    for (const char* name : {"ABKneeLutAddr", "ABKneeLutStart", "ABKneeLutEnd", "ABKneeLutWrite"}) {
        board.registers.push_back({name, 17, 1});
    }
    auto fabrixBoard = std::make_unique<Fg_FabrixBoard>(FakeBoard::design(), FakeBoard::device(), nullptr);
    fabrixBoard->setIsDualDesign(true);
    Fg_StdMaster master(std::move(fabrixBoard));
    auto* module = new PSKneeLut(&master);
    master.getHeader()->addModule(module, 0);
    EXPECT_EQ(module->getRegisterInitSuccess(), 0);
    EXPECT_EQ(module->updateAllParameters(1), 0);
    ASSERT_THAT(board.writes(), SizeIs(7168));
    EXPECT_EQ(board.writes()[1], "ABKneeLutEnd 64");
}

}  // namespace
