#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "StandardApplets/grabber_basis/RSFx4/TriggerConversions.h"
#include "StandardApplets/grabber_basis/Truncation.h"

namespace {

constexpr double kClockMHz = 62.5;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr uint32_t kMinusOne = 4294967295u;

TEST(Truncation, CutsTowardZeroAndWrapsToTheWidth) {
    struct Row {
        double value;
        uint32_t expected;
    };
    for (const Row& row : {
             Row{0.0,           0         },
             Row{2.999,         2         },
             Row{-0.999,        0         },
             Row{-1.0,          4294967295},
             Row{-1.999,        4294967295},
             Row{4294967295.9,  4294967295},
             Row{4294967296.0,  0         },
             Row{4294967299.5,  3         },
             Row{-4294967297.0, 4294967295},
             Row{1e300,         0         },
             Row{kInfinity,     0         },
             Row{-kInfinity,    0         },
             Row{kNotANumber,   0         },
    }) {
        EXPECT_EQ(truncateTo<uint32_t>(row.value), row.expected) << row.value;
    }
    EXPECT_EQ(truncateTo<int32_t>(2147483648.0), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(truncateTo<int32_t>(-7.9), -7);
    EXPECT_EQ(truncateTo<uint16_t>(65537.0), 1);
    EXPECT_EQ(truncateTo<uint16_t>(-1.0), 65535);
    EXPECT_EQ(truncateTo<int64_t>(-9223372036854775808.0), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(truncateTo<uint64_t>(18446744073709551616.0), 0u);
}

TEST(TriggerConversions, CountFrameRates) {
    struct Row {
        double hz, timeBaseUs;
        uint32_t count;
        double back;
    };
    for (const Row& row : {
             Row{8.0,   10.0,  12499,      8.0               },
             Row{30.0,  10.0,  3332,       30.003000300030003},
             Row{30.0,  0.8,   41666,      29.999760001919988},
             Row{527.0, 0.496, 3825,       526.9547914945282 },
             Row{0.0,   10.0,  kMinusOne,  kInfinity         },
             Row{1e300, 10.0,  kMinusOne,  kInfinity         },
             Row{-8.0,  10.0,  0xFFFFCF2C, -8.000640051204096},
    }) {
        EXPECT_EQ(frameRateToCount(row.hz, row.timeBaseUs), row.count) << row.hz;
        EXPECT_DOUBLE_EQ(countToFrameRate(row.count, row.timeBaseUs), row.back) << row.hz;
    }
    EXPECT_EQ(frameRateToCount(8.0, 0.0), kMinusOne);
    EXPECT_EQ(countToFrameRate(0, 0.0), kInfinity);
}

TEST(TriggerConversions, CountDelaysCutAfterHalfAMicrosecond) {
    struct Row {
        double us, timeBaseUs;
        uint32_t count;
        double back;
    };
    for (const Row& row : {
             Row{0.0,   10.0,  0,         0.0  },
             Row{25.0,  10.0,  2,         20.0 },
             Row{29.4,  10.0,  2,         20.0 },
             Row{29.5,  10.0,  3,         30.0 },
             Row{0.0,   0.496, 1,         0.496},
             Row{0.496, 0.496, 2,         0.992},
             Row{0.0,   0.0,   0,         0.0  },
             Row{-20.0, 10.0,  kMinusOne, -10.0},
    }) {
        EXPECT_EQ(delayToCount(row.us, row.timeBaseUs), row.count) << row.us << " " << row.timeBaseUs;
        EXPECT_DOUBLE_EQ(countToDelay(row.count, row.timeBaseUs), row.back) << row.us << " " << row.timeBaseUs;
    }
}

TEST(TriggerConversions, CountDurationsRoundedAndLessOne) {
    struct Row {
        double us, timeBaseUs;
        uint32_t count, highCount;
        double back;
        uint32_t exposureUs;
    };
    for (const Row& row : {
             Row{4000.0, 10.0,  399,       399,       4000.0,   4000},
             Row{4005.0, 10.0,  400,       399,       4010.0,   4010},
             Row{1001.0, 0.8,   1250,      1250,      1000.8,   1000},
             Row{1000.0, 0.8,   1249,      1249,      1000.0,   1000},
             Row{1001.0, 0.496, 2017,      2017,      1000.928, 1000},
             Row{4004.0, 8.0,   500,       499,       4008.0,   4008}, // 500.5 units
             Row{0.0,    0.496, kMinusOne, kMinusOne, 0.0,      0   },
             Row{0.0,    0.0,   kMinusOne, kMinusOne, 0.0,      0   },
    }) {
        SCOPED_TRACE(testing::Message() << row.us << " us of " << row.timeBaseUs);
        EXPECT_EQ(durationToCount(row.us, row.timeBaseUs), row.count);
        EXPECT_EQ(durationToHighCount(row.us, row.timeBaseUs), row.highCount);
        EXPECT_DOUBLE_EQ(countToDuration(row.count, row.timeBaseUs), row.back);
        EXPECT_EQ(countToExposureUs(row.count, row.timeBaseUs), row.exposureUs);
    }
    EXPECT_EQ(countToExposureUs(0xFFFFFFFE, 10.0), 4294967286u) << "below zero wraps";
}

TEST(TriggerConversions, CountTimeBasesInClockCycles) {
    struct Row {
        double us;
        uint32_t count;
        double back;
    };
    for (const Row& row : {
             Row{10.0,  624,        10.0  },
             Row{0.8,   49,         0.8   },
             Row{0.496, 30,         0.496 },
             Row{0.2,   12,         0.208 }, // 12.5 cycles
             Row{11.0,  687,        11.008}, // 687.5 cycles
             Row{0.0,   kMinusOne,  0.0   },
             Row{-1.0,  0xFFFFFFC1, -0.992},
    }) {
        EXPECT_EQ(timeBaseToCount(row.us, kClockMHz), row.count) << row.us;
        EXPECT_DOUBLE_EQ(countToTimeBase(row.count, kClockMHz), row.back) << row.us;
    }
}

TEST(TriggerConversions, LetFrameRateAndExposureBoundEachOther) {
    EXPECT_DOUBLE_EQ(smallestFrameRate(20, 10.0), 0.095367431640625);
    EXPECT_DOUBLE_EQ(largestFrameRate(4000, 10.0), 248.75621890547265);
    EXPECT_DOUBLE_EQ(largestFrameRate(0, 10.0), 50000.0);
    EXPECT_EQ(largestFrameRate(0, 0.0), kInfinity);
    EXPECT_EQ(smallestExposureUs(10.0), 20);
    EXPECT_EQ(smallestExposureUs(0.8), 1);
    EXPECT_EQ(smallestExposureUs(0.496), 0);
    EXPECT_EQ(smallestExposureUs(-0.992), 0);
    EXPECT_EQ(largestExposureUs(8.0, 20, 10.0), 124980u);
    EXPECT_EQ(largestExposureUs(8.0, 10, 10.0), 10240u) << "the register bounds";
    EXPECT_EQ(largestExposureUs(8.0, 20, 0.496), 124999u);
    EXPECT_EQ(largestExposureUs(48000.0, 20, 10.0), 0u) << "0.83 us";
    EXPECT_EQ(largestExposureUs(51200.0, 20, 10.0), 0u) << "-0.47 us";
    EXPECT_EQ(largestExposureUs(100000.0, 20, 10.0), 10485760u) << "-10 us";
    EXPECT_EQ(largestExposureUs(kInfinity, 20, 10.0), 10485760u);
}

}  // namespace
