#include <functional>

#include "board/StageFixture.h"
#include "simulation/board/KneeTable.h"

using namespace simulation;

namespace {

/// The value of support point i, 0 to 1024.
using Points = std::function<uint32_t(uint32_t)>;

uint32_t identity(uint32_t i) { return i * 64; }
uint32_t fallingLine(uint32_t i) { return i == 0 ? 65535 : 65536 - i * 64; }
uint32_t doubled(uint32_t i) { return i < 512 ? i * 128 : i < 1024 ? 65535 : 65536; }

void load(KneeTable& table, const Points& points, uint64_t strobe = 1) {
    for (uint32_t i = 0; i < 1024; ++i) table.load({points(i), points(i + 1), i, strobe});
}

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
    set("AAGenEnable", 0);
    EXPECT_EQ(acquire(), plain);
    load(fallingLine);
    ASSERT_EQ(mBoard.configure(&mStages), 0);
    set("AAAreaWidth", 3);
    set("AAAreaHeight", 31);
    set("AAglobal_work", 1);
    set("AACamPortEnable", 1);
    EXPECT_EQ(acquire(), plain);
}

TEST_F(KneeTest, TheBlackBeyondTheSensorPassesTheTable) {
    load(fallingLine);
    set("AAAreaHeight", 33);
    addBuffers(1, 64 * 34);
    const std::vector<uint8_t> picture = acquire();
    EXPECT_THAT(std::span(picture).last(128), Each(255));
}

}  // namespace
