// Sensor readout: RSSensorReadout8Tab and PSSensorReadout8Tab.
#include <array>

#include "StandardApplets/grabber_basis/PSFx4/PSSensorReadout8Tab.h"
#include "tests/core/GrabberTest.h"

namespace {

/// A mode with its register values: tap number, direction, mirror, order, bypass, schema A and B.
struct Mode {
    int value;
    const char* name;
    std::array<uint32_t, 7> registers;
};

// clang-format off
constexpr std::array kModes{
    Mode{0, "SMODE_UNCHANGED", {0x0, 0x00, 0x00, 0xE4E4, 1, 0x76543210, 0xFEDCBA98}},
    Mode{3, "SMODE_REVERSE", {0x0, 0x11, 0x11, 0xE4E4, 1, 0xEFCDAB89, 0x67452301}},
    Mode{30, "SMODE_TAB8_0", {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xEFCD6745}},
    Mode{31, "SMODE_TAB8_1", {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xDCFE5476}},
    Mode{32, "SMODE_TAB8_2", {0x0, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},
    Mode{33, "SMODE_TAB8_3", {0x5, 0x00, 0x00, 0xE4E4, 0, 0xBA983210, 0xFEDC7654}},
    Mode{34, "SMODE_TAB8_4", {0x5, 0x33, 0x33, 0xB1B1, 0, 0xEFCD6745, 0xAB892301}},
    Mode{35, "SMODE_TAB8_5", {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xDCFE5476}},
    Mode{36, "SMODE_TAB8_6", {0x0, 0x10, 0x10, 0xE4E4, 0, 0xFEDC7654, 0xAB892301}},
    Mode{37, "SMODE_TAB8_7", {0x0, 0x10, 0x10, 0xE4E4, 0, 0xCDEF4567, 0xAB892301}},
    Mode{38, "SMODE_TAB8_8", {0x0, 0x11, 0x11, 0xE4E4, 0, 0xEFCD6745, 0xAB892301}},
    Mode{39, "SMODE_TAB8_9", {0x5, 0x30, 0x30, 0xB1E4, 0, 0xCDEF4567, 0xAB892301}},
    Mode{40, "SMODE_TAB8_10", {0x5, 0x30, 0x30, 0xB1E4, 0, 0xBA983210, 0xCDEF4567}},
    Mode{41, "SMODE_TAB8_11", {0x5, 0x30, 0x30, 0xB1E4, 0, 0xDCFE5476, 0xAB892301}},
    Mode{42, "SMODE_TAB8_12", {0xF, 0x00, 0x00, 0xE4E4, 0, 0xB3A29180, 0xF7E6D5C4}},
    Mode{43, "SMODE_TAB8_13", {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x7F6E5D4C, 0x3B2A1908}},
    Mode{44, "SMODE_TAB8_14", {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xB3A29180, 0x4C5D6E7F}},
    Mode{45, "SMODE_TAB8_15", {0xF, 0xF0, 0xF0, 0x1BE4, 0, 0xC4D5E6F7, 0x3B2A1908}},
    Mode{46, "SMODE_TAB8_16", {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x3B2A9180, 0x7F6ED5C4}},
    Mode{47, "SMODE_TAB8_17", {0xF, 0xCC, 0xCC, 0xE4E4, 0, 0x4C5DE6F7, 0x0819A2B3}},
    Mode{48, "SMODE_TAB8_18", {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x08192A3B, 0x4C5D6E7F}},
    Mode{49, "SMODE_TAB8_19", {0xF, 0x00, 0x00, 0xE4E4, 0, 0xC4D5E6F7, 0x8091A2B3}},
    Mode{50, "SMODE_TAB8_20", {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x08192A3B, 0xF7E6D5C4}},
    Mode{51, "SMODE_TAB8_21", {0xF, 0x0F, 0x0F, 0xE41B, 0, 0x7F6E5D4C, 0x8091A2B3}},
};
// clang-format on

std::vector<std::string> writesOf(const Mode& mode) {
    constexpr std::array kNames{"TapNumber",       "TapDirection",      "ReadOutMirror",    "ReadOutTapOrder",
                                "InsertionBypass", "TapSortingSchemaA", "TapSortingSchemaB"};
    std::vector<std::string> writes;
    for (size_t i = 0; i < kNames.size(); ++i) {
        writes.push_back(kNames[i] + (" " + std::to_string(mode.registers[i])));
    }
    return writes;
}

class SensorReadoutTest : public ModuleTest {
protected:
    PSSensorReadout8Tab& addModule() {
        PSSensorReadout8Tab& module = add<PSSensorReadout8Tab>(8);
        board.clearEvents();
        return module;
    }
};

TEST_F(SensorReadoutTest, EveryModeWritesItsSevenRegisters) {
    addModule();
    for (const Mode& mode : kModes) {
        SCOPED_TRACE(mode.name);
        for (int again = 0; again < 2; ++again) {
            board.clearEvents();
            EXPECT_EQ(set(FG_SENSORREADOUT, mode.value), 0);
            EXPECT_THAT(board.writes(), ElementsAreArray(writesOf(mode)));
        }
        EXPECT_EQ(get(FG_SENSORREADOUT), mode.value);
    }
}

TEST_F(SensorReadoutTest, RefusedModesChangeNothing) {
    addModule();
    ASSERT_EQ(set(FG_SENSORREADOUT, 3), 0);
    board.clearEvents();
    for (int value : {-1, 1, 2, 4, 29, 52, 1 << 30}) EXPECT_EQ(set(FG_SENSORREADOUT, value), -6000) << value;
    EXPECT_EQ(set(FG_SENSORREADOUT, 3.0), -2070);
    EXPECT_EQ(get(FG_SENSORREADOUT), 3);
    EXPECT_THAT(board.writes(), IsEmpty());
}

TEST_F(SensorReadoutTest, AFailedWriteStopsNoOtherAndCountsInTheSum) {
    PSSensorReadout8Tab& module = addModule();
    board.failWrite("TapNumber", -5);
    board.failWrite("TapSortingSchemaA", -7);
    EXPECT_EQ(set(FG_SENSORREADOUT, 42), -12);
    EXPECT_THAT(board.writes(), ElementsAreArray(writesOf(kModes[14])));
    EXPECT_EQ(module.updateAllParameters(0), -1);
    board.failWrite("TapNumber", 0);
    board.failWrite("TapSortingSchemaA", 0);
    EXPECT_EQ(module.updateAllParameters(0), 0);
    EXPECT_EQ(board.value("TapNumber"), 15u);
}

}  // namespace
