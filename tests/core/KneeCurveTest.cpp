#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <utility>
#include <vector>

#include "StandardApplets/grabber_basis/RSFx4/KneeCurve.h"

namespace {

std::array<double, kKneePoints> straightLine() {
    std::array<double, kKneePoints> line;
    for (size_t i = 0; i < kKneePoints; ++i) line[i] = static_cast<double>(i) / 1024;
    return line;
}

TEST(KneeCurveTest, StraightLineBecomesTheseCodes) {
    const struct {
        const char* what;
        KneeProcessing processing;
        int shift;
        std::vector<std::pair<size_t, int>> codes;
    } cases[] = {
        {"identity",                     {},                                                0, {{0, 0}, {1, 64}, {512, 32768}, {1023, 65472}, {1024, 65536}} },
        {"ten bits",                     {},                                                6, {{0, 0}, {1, 1}, {777, 777}, {1023, 1023}, {1024, 1024}}      },
        {"twelve bits",                  {.gain = 2},                                       4, {{1, 8}, {511, 4088}, {512, 4095}, {1023, 4095}, {1024, 4096}}},
        {"sixteen bits out",             {},                                                8, {{1, 0}, {2, 1}, {1022, 255}, {1024, 256}}                    },
        {"gamma 0.5",                    {.gamma = 0.5},                                    0, {{256, 4096}, {512, 16384}, {1024, 65536}}                    },
        {"gamma 2",                      {.gamma = 2},                                      0, {{1, 2048}, {256, 32768}, {1024, 65536}}                      },
        {"gamma 0",                      {.gamma = 0},                                      0, {{0, 0}, {1023, 0}, {1024, 65536}}                            },
        {"gain 2",                       {.gain = 2},                                       0, {{256, 32768}, {511, 65408}, {512, 65535}, {1024, 65536}}     },
        {"gain -1",                      {.gain = -1},                                      0, {{0, 0}, {512, 0}, {1024, 0}}                                 },
        {"offset 0.25",                  {.offset = 0.25},                                  0, {{0, 16384}, {767, 65472}, {768, 65535}}                      },
        {"offset 1",                     {.offset = 1},                                     0, {{0, 65535}, {1023, 65535}, {1024, 65536}}                    },
        {"offset -1",                    {.offset = -1},                                    0, {{0, 0}, {1023, 0}, {1024, 0}}                                },
        {"offset comes before gain",     {.offset = 0.25, .gain = 2},                       0, {{0, 32768}, {256, 65535}}                                    },
        {"gain comes before gamma",      {.gain = 0.5, .gamma = 0.5},                       0, {{1024, 16384}}                                               },
        {"inverted",                     {.invert = true},                                  0, {{0, 65535}, {1, 65472}, {1023, 64}, {1024, 0}}               },
        {"gamma comes before inversion", {.gamma = 0.5, .invert = true},                    0, {{512, 16384}, {768, 4096}}                                   },
        {"negative squared",             {.offset = -0.5, .gamma = 0.5},                    0, {{0, 16384}, {512, 0}, {1024, 16384}}                         },
        {"root of negative",             {.offset = -0.5, .gamma = 2},                      0, {{0, 0}, {511, 0}, {640, 23170}}                              },
        {"root of negative last",        {.offset = -0.5, .gamma = 2, .invert = true},      0, {{0, 46341}, {1023, 0}, {1024, -1}}                           },
        {"component gain",               {.componentGain = 0.5, .offset = 0.5},             0, {{0, 32768}, {512, 49152}, {1024, 65536}}                     },
        {"infinite gain",                {.gain = std::numeric_limits<double>::infinity()}, 0, {{0, 0}, {1, 65535}, {1024, 65536}}                           },
    };
    for (const auto& [what, processing, shift, codes] : cases) {
        auto curve = straightLine();
        processKneeCurve(curve, processing);
        const KneeCodes calculated = quantiseKneeCurve(curve, shift);
        for (const auto& [point, code] : codes) EXPECT_EQ(calculated[point], code) << what << " at " << point;
    }
}

TEST(KneeCurveTest, ShiftFollowsPixelDepthThenFormat) {
    const std::array<std::array<int, 3>, 13> cases{
        {{8, 3, 0},
         {8, 2, 0},
         {8, 1, 8},
         {8, 6, 8},
         {8, 4, 2},
         {8, 5, 2},
         {8, -1, 0},
         {0, 3, 0},
         {-5, 1, 8},
         {9, 1, 7},
         {10, 3, 6},
         {16, 1, 0},
         {40, 3, 0}}
    };
    for (const auto& [depth, format, shift] : cases)
        EXPECT_EQ(kneeShift(depth, format), shift) << depth << " " << format;
}

}  // namespace
