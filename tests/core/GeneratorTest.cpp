// Test-image generator: RSGenerator and PSGenerator.
#include <cmath>
#include <limits>

#include "StandardApplets/grabber_basis/PSFx4/PSGenerator.h"
#include "tests/core/GrabberTest.h"

namespace {

constexpr int kSixteenPixelsAClock = 30;

class GeneratorTest : public ModuleTest {
protected:
    PSGenerator& addModule() {
        master().setIsMedium(true);
        master().setCameraCategory(kSixteenPixelsAClock, 0);
        PSGenerator& module = add<PSGenerator>();
        board.clearEvents();
        return module;
    }
};

TEST_F(GeneratorTest, EachParameterWritesItsRegisters) {
    addModule();
    const struct {
        int id;
        int value;
        std::vector<std::string> writes;
    } rows[] = {
        {FG_GEN_ENABLE,   1,     {"AAGenEnable 1"}                        },
        {FG_GEN_WIDTH,    4096,  {"AAGenWidth 512", "AAGenLineWidth 512"} },
        {FG_GEN_LINE_GAP, 65535, {"AAGenWidth 512", "AAGenLineWidth 8703"}},
        {FG_GEN_WIDTH,    0,     {"AAGenWidth 0", "AAGenLineWidth 8191"}  },
        {FG_GEN_HEIGHT,   65535, {"AAGenHeight 65534"}                    },
        {FG_GEN_HEIGHT,   0,     {"AAGenHeight 4294967295"}               },
        {FG_GEN_TAP3,     0,     {"AAGenMask 11"}                         },
        {FG_GEN_TAP1,     0,     {"AAGenMask 10"}                         },
        {FG_GEN_TAP4,     0,     {"AAGenMask 2"}                          },
        {FG_GEN_TAP3,     1,     {"AAGenMask 6"}                          },
        {FG_GEN_TAP2,     0,     {"AAGenMask 4"}                          },
        {FG_GEN_ROLL,     255,   {"AAGenRoll 255"}                        },
        {FG_GEN_START,    0,     {"AAGenStart 0"}                         },
        {FG_GEN_ACCURACY, 50,    {"AAGenPassive 34", "AAGenActive 16"}    },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.id << " = " << row.value);
        board.clearEvents();
        EXPECT_EQ(set(row.id, row.value), 0);
        EXPECT_THAT(board.writes(), ElementsAreArray(row.writes));
        EXPECT_EQ(get(row.id), row.value);
    }
    EXPECT_EQ(get(FG_GEN_LINE_WIDTH), 65535);
    EXPECT_EQ(get(FG_GEN_ACTIVE), 16);
    EXPECT_EQ(get(FG_GEN_PASSIVE), 34);
}

TEST_F(GeneratorTest, FrequencyReadsAsTheOneThatThePatternGives) {
    addModule();
    EXPECT_EQ(get<double>(FG_GEN_FREQ), 40.0);
    EXPECT_EQ(set(FG_GEN_FREQ, 33.0), 0);
    EXPECT_THAT(board.writes(), ElementsAre("AAGenPassive 18", "AAGenActive 7"));
    EXPECT_EQ(get<double>(FG_GEN_FREQ), 35.0);
    // The requested 33 MHz, not the 35 MHz in use, decides the next pattern and the shortest one.
    EXPECT_EQ(set(FG_GEN_ACCURACY, 125), 0);
    EXPECT_EQ(get<double>(FG_GEN_FREQ), 33.0);
    EXPECT_EQ(set(FG_GEN_FREQ, 31.0), 0);
    EXPECT_EQ(minimum(FG_GEN_ACCURACY), 3);
    EXPECT_EQ(set(FG_GEN_FREQ, 125.0), 0);
    EXPECT_THAT(board.value("AAGenPassive"), 0u);
    EXPECT_EQ(get<double>(FG_GEN_FREQ), 125.0);
}

TEST_F(GeneratorTest, FrequencyAndAccuracyBoundEachOther) {
    addModule();
    EXPECT_EQ(minimum<double>(FG_GEN_FREQ), 3.0);
    EXPECT_EQ(set(FG_GEN_FREQ, 1.0), -6000);
    EXPECT_EQ(set(FG_GEN_FREQ, 125.5), -6000);
    EXPECT_EQ(set(FG_GEN_FREQ, std::nan("")), -6000);
    EXPECT_EQ(set(FG_GEN_ACCURACY, 256), -6000);
    EXPECT_EQ(set(FG_GEN_ACCURACY, 1), -6000);
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_EQ(set(FG_GEN_ACCURACY, 50), 0);
    EXPECT_EQ(minimum<double>(FG_GEN_FREQ), 2.0);
    EXPECT_EQ(maximum<double>(FG_GEN_FREQ), 125.0);
    EXPECT_EQ(set(FG_GEN_FREQ, 3.0), 0);
    EXPECT_EQ(minimum(FG_GEN_ACCURACY), 21);
}

TEST_F(GeneratorTest, WhatNoPatternGivesIsRefusedAndChangesNothing) {
    for (int bits : {8, 32}) {
        SCOPED_TRACE(bits);
        board.setWidth("AAGenActive", bits);
        board.setWidth("AAGenPassive", bits);
        PSGenerator module(&master());
        EXPECT_TRUE(module.calcRegisterSettings(40.0, 25));
        const double infinite = std::numeric_limits<double>::infinity();
        for (double freq : {0.0, 1.0, 2.49, 127.51, -40.0, -1e300, 1e300, infinite, -infinite, std::nan("")}) {
            EXPECT_FALSE(module.calcRegisterSettings(freq, 25)) << freq;
            EXPECT_EQ(module.setParamToRs(FG_GEN_FREQ, &freq, 0), -2075) << freq;
        }
        EXPECT_FALSE(module.calcRegisterSettings(40.0, 0));
        int accuracy = 65536 + 1;  // 1 in 16 bits
        EXPECT_EQ(module.setParamToRs(FG_GEN_ACCURACY, &accuracy, 0), -2075);
        double freq = 0;
        EXPECT_EQ(module.getParamFromRs(FG_GEN_FREQ, &freq, 0), 0);
        EXPECT_EQ(freq, 40.0);
        accuracy = 65536 + 50;
        EXPECT_EQ(module.setParamToRs(FG_GEN_ACCURACY, &accuracy, 0), 0);
        EXPECT_EQ(module.getParamFromRs(FG_GEN_ACCURACY, &accuracy, 0), 0);
        EXPECT_EQ(accuracy, 50);
    }
}

}  // namespace
