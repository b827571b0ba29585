#include <array>
#include <functional>
#include <thread>

#include "board/StageFixture.h"
#include "simulation/board/KneeTable.h"

using namespace simulation;
using testing::Each;

namespace {

/// The value of support point i, 0 to 1024.
using Points = std::function<uint32_t(uint32_t)>;

uint32_t identity(uint32_t i) { return i * 64; }
uint32_t fallingLine(uint32_t i) { return i == 0 ? 65535 : 65536 - i * 64; }
uint32_t doubled(uint32_t i) { return i < 512 ? i * 128 : i < 1024 ? 65535 : 65536; }
uint32_t squared(uint32_t i) { return i < 1024 ? (i * i + 8) / 16 : 65536; }

void load(KneeTable& table, const Points& points, uint64_t strobe = 1) {
    for (uint32_t i = 0; i < 1024; ++i) table.load({points(i), points(i + 1), i, strobe});
}

// The squares p * p / 255, rounded.
constexpr std::array<uint8_t, 256> kSquares{
    // clang-format off
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1,
    1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4,
    4, 4, 5, 5, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9,
    9, 9, 10, 10, 11, 11, 11, 12, 12, 13, 13, 14, 14, 15, 15, 16,
    16, 17, 17, 18, 18, 19, 19, 20, 20, 21, 21, 22, 23, 23, 24, 24,
    25, 26, 26, 27, 28, 28, 29, 30, 30, 31, 32, 32, 33, 34, 35, 35,
    36, 37, 38, 38, 39, 40, 41, 42, 42, 43, 44, 45, 46, 47, 47, 48,
    49, 50, 51, 52, 53, 54, 55, 56, 56, 57, 58, 59, 60, 61, 62, 63,
    64, 65, 66, 67, 68, 69, 70, 71, 73, 74, 75, 76, 77, 78, 79, 80,
    81, 82, 84, 85, 86, 87, 88, 89, 91, 92, 93, 94, 95, 97, 98, 99,
    100, 102, 103, 104, 105, 107, 108, 109, 111, 112, 113, 115, 116, 117, 119, 120,
    121, 123, 124, 126, 127, 128, 130, 131, 133, 134, 136, 137, 139, 140, 142, 143,
    145, 146, 148, 149, 151, 152, 154, 155, 157, 158, 160, 162, 163, 165, 166, 168,
    170, 171, 173, 175, 176, 178, 180, 181, 183, 185, 186, 188, 190, 192, 193, 195,
    197, 199, 200, 202, 204, 206, 207, 209, 211, 213, 215, 217, 218, 220, 222, 224,
    226, 228, 230, 232, 233, 235, 237, 239, 241, 243, 245, 247, 249, 251, 253, 255,
    // clang-format on
};

TEST(KneeTableTest, EveryShadeTakesItsPlaceOnTheCurve) {
    KneeTable table;
    const auto expectEach = [&](const std::function<int(int)>& expected) {
        for (int shade = 0; shade < 256; ++shade) {
            EXPECT_EQ(table.curve()[static_cast<uint8_t>(shade)], expected(shade)) << shade;
        }
    };
    expectEach([](int shade) { return shade; });
    EXPECT_TRUE(table.curve().isIdentity()) << "after power-up";
    load(table, fallingLine);
    expectEach([](int shade) { return 255 - shade; });
    EXPECT_FALSE(table.curve().isIdentity());
    load(table, doubled);
    expectEach([](int shade) { return shade < 128 ? 2 * shade : 255; });
    load(table, squared);
    expectEach([](int shade) { return kSquares[static_cast<size_t>(shade)]; });
    load(table, identity);
    expectEach([](int shade) { return shade; });
    EXPECT_TRUE(table.curve().isIdentity()) << "loaded again";
}

TEST(KneeTableTest, ASegmentIsALineThatReachesNoOtherSegment) {
    KneeTable table;
    // Shade 51 lies 0.8 into segment 204, where 0.8 * 20000 makes 16000 or shade 62.26; shade 255 ends the last one.
    table.load({0, 20000, 204, 1});
    table.load({65535, 32768, 1023, 1});
    for (int shade = 0; shade < 256; ++shade) {
        const int expected = shade == 51 ? 62 : shade == 255 ? 128 : shade;
        EXPECT_EQ(table.curve()[static_cast<uint8_t>(shade)], expected) << shade;
    }
}

TEST(KneeTableTest, OnlyTheStrobeOfTheGrayTableLoads) {
    KneeTable table;
    for (const uint64_t strobe : {0u, 2u, 4u, 8u, 14u}) load(table, fallingLine, strobe);
    EXPECT_TRUE(table.curve().isIdentity());
    load(table, fallingLine, 15);
    EXPECT_EQ(table.curve()[0], 255);
}

TEST(KneeTableTest, ValuesBeyondFullScaleAreWhiteAndWiderFieldsAreCut) {
    KneeTable table;
    load(table, [](uint32_t) { return 131071; });
    EXPECT_EQ(table.curve()[0], 255);
    EXPECT_EQ(table.curve()[255], 255);
    table.load({~uint64_t{0x1FFFF}, ~uint64_t{0x1FFFF}, ~uint64_t{0x3FF}, 1});
    EXPECT_EQ(table.curve()[0], 0);
    EXPECT_EQ(table.curve()[1], 255);
}

class KneeTest : public StageFixture {
protected:
    void load(const Points& points) {
        for (uint32_t i = 0; i < 1024; ++i) {
            write(mStart, points(i));
            write(mEnd, points(i + 1));
            write(mAddress, i);
            for (const uint64_t strobe : {1u, 2u, 4u, 8u}) write(mStrobe, strobe);
        }
    }

    const int mStart = handleOf("AAKneeLutStart");
    const int mEnd = handleOf("AAKneeLutEnd");
    const int mAddress = handleOf("AAKneeLutAddr");
    const int mStrobe = handleOf("AAKneeLutWrite");
};

std::vector<uint8_t> inverted(std::vector<uint8_t> pixels) {
    for (uint8_t& pixel : pixels) pixel = static_cast<uint8_t>(255 - pixel);
    return pixels;
}

TEST_F(KneeTest, PicturesShowTheLoadedCurveUntilTheNextConfiguration) {
    const std::vector<uint8_t> plain = acquire();
    ASSERT_FALSE(plain.empty());
    load(fallingLine);
    EXPECT_EQ(acquire(), inverted(plain));
    switchToGenerator();
    const std::vector<uint8_t> generated = acquire();
    load(identity);
    EXPECT_EQ(inverted(acquire()), generated) << "the generator's frames pass the table as well";
    set({
        {"AAGenEnable", 0}
    });
    EXPECT_EQ(acquire(), plain);
    load(fallingLine);
    ASSERT_EQ(mBoard.configure(&mStages), 0);
    set({
        {"AAAreaWidth",     3 },
        {"AAAreaHeight",    31},
        {"AAglobal_work",   1 },
        {"AACamPortEnable", 1 }
    });
    EXPECT_EQ(acquire(), plain);
}

TEST_F(KneeTest, TheBlackBeyondTheSensorPassesTheTable) {
    load(fallingLine);
    set({
        {"AAAreaHeight", 33}
    });
    addBuffers(1, 64 * 34);
    const std::vector<uint8_t> picture = acquire();
    ASSERT_EQ(picture.size(), 64u * 34u);
    EXPECT_THAT(std::span(picture).last(128), Each(255));
}

TEST_F(KneeTest, SegmentsAreTakenWhileATransferRuns) {
    const std::vector<uint8_t> plain = acquire();
    BufferSet& buffers = *mBuffers;
    ASSERT_EQ(start(-1), 0);
    std::thread loader([this] {
        for (int i = 0; i < 10; ++i) {
            load(fallingLine);
            load(identity);
        }
        load(doubled);
    });
    loader.join();
    EXPECT_GT(buffers.wait(buffers.lastPicture() + 1, 20), 0) << "it goes on";
    ASSERT_EQ(mBoard.stopDma(0), 0);
    std::vector<uint8_t> bright = plain;
    for (uint8_t& pixel : bright) pixel = static_cast<uint8_t>(std::min(2 * pixel, 255));
    EXPECT_EQ(acquire(), bright);
}

}  // namespace
