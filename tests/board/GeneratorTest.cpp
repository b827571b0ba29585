
#include "board/StageFixture.h"
#include "simulation/board/Generator.h"

using namespace simulation;

namespace {

void show(Generator& generator, PictureSize size, uint32_t taps, uint32_t roll, uint64_t number) {
    generator.show({true, true, size, taps, roll}, number);
}

uint8_t pixel(Generator& generator, uint32_t x, uint32_t y) { return generator.line(y)[x]; }

TEST(GeneratorPatternTest, TheRegistersCountEightPixelsAndLinesFromZero) {
    const GeneratorSettings settings = Generator::settings({1, 1, 8, 128, 1023, 5, 3});
    EXPECT_TRUE(settings.isSource && settings.runs);
    EXPECT_EQ(settings.size, (PictureSize{1024, 1024}));
    EXPECT_EQ(settings.taps, 5u);
    EXPECT_EQ(settings.roll, 3u);
    EXPECT_FALSE(Generator::settings({0, 1, 8, 128, 1023, 15, 0}).isSource);
    EXPECT_FALSE(Generator::settings({1, 0, 8, 128, 1023, 15, 0}).runs) << "held";
    EXPECT_FALSE(Generator::settings({1, 1, 0, 128, 1023, 15, 0}).runs) << "no pixel clock";
    EXPECT_FALSE(Generator::settings({1, 1, 8, 0, 1023, 15, 0}).runs) << "no pixels";
}

TEST(GeneratorPatternTest, ShowsAWedgeUnderAGrid) {
    Generator generator;
    show(generator, {1024, 1024}, 15, 0, 7);
    EXPECT_EQ(pixel(generator, 0, 0), 255);
    EXPECT_EQ(pixel(generator, 64, 3), 255);
    EXPECT_EQ(pixel(generator, 5, 960), 255);
    EXPECT_EQ(pixel(generator, 1, 1), 2);
    EXPECT_EQ(pixel(generator, 100, 50), 150);
    EXPECT_EQ(pixel(generator, 200, 100), 44);
    EXPECT_EQ(pixel(generator, 1023, 1023), 254);
}

TEST(GeneratorPatternTest, RollsToTheRightAndStandsStillWithoutIt) {
    Generator generator;
    Generator still;
    for (const uint64_t number : {1u, 2u, 27u, 4'000'000'000u}) {
        SCOPED_TRACE(number);
        show(still, {512, 8}, 15, 0, number);
        show(generator, {512, 8}, 15, 10, number);
        const auto moved = static_cast<uint32_t>((number - 1) * 10 % 256);
        for (uint32_t x = 256; x < 512; ++x) ASSERT_EQ(pixel(generator, x, 5), pixel(still, x - moved, 5)) << x;
    }
}

using GeneratorTest = StageFixture;

TEST_F(GeneratorTest, ReplacesTheCameraWhileItIsEnabled) {
    const std::vector<uint8_t> camera = acquire();
    switchToGenerator();
    mBoard.setLink(false);
    EXPECT_EQ(mBoard.disturbances().setLinkGap(0, 1e9).code, 0);
    set("AACamPortEnable", 0);
    const std::vector<uint8_t> pattern = acquire();
    ASSERT_EQ(pattern.size(), 2048u) << "without a camera";
    EXPECT_EQ(pattern[64 + 1], 2);
    EXPECT_EQ(pattern[64 * 31 + 63], 31 + 63);
    set("AAGenWidth", 4);
    set("AAGenHeight", 15);
    const std::vector<uint8_t> small = acquire();
    EXPECT_EQ(small[64 * 15 + 31], 15 + 31);
    EXPECT_EQ(small[64 * 15 + 32], 0) << "beyond the line";
    EXPECT_THAT(std::vector<uint8_t>(small.begin() + 64 * 16, small.end()), Each(0)) << "beyond the frame";
    EXPECT_EQ(mBoard.disturbances().setLinkGap(0, 0).code, 0);
    mBoard.setLink(true);
    set("AACamPortEnable", 1);
    set("AAGenEnable", 0);
    EXPECT_EQ(acquire(), camera);
}

TEST_F(GeneratorTest, ThePixelClockSetsTheFrameRate) {
    struct Row {
        uint64_t active, passive, width, lineWidth, height;
        int64_t periodNs;
    };
    // A pixel comes in so many of the clocks of 8 ns; lines count from 0, widths in 8 pixels.
    constexpr std::array kRows{
        Row{25, 0,  128, 128, 1023, 8'388'608 }, // 1024 lines of 1024 pixels at 125 MHz
        Row{8,  17, 128, 128, 1023, 26'214'400}, // at 40 MHz
        Row{8,  17, 128, 256, 1023, 52'428'800}, // a gap as long as the line
        Row{8,  17, 128, 4,   1023, 26'214'400}, // a line takes all its pixels
        Row{1,  2,  8,   0,   0,    1'536     },
    };
    BufferSet& buffers = addBuffers(3);
    switchToGenerator();
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.periodNs);
        set("AAGenActive", row.active);
        set("AAGenPassive", row.passive);
        set("AAGenWidth", row.width);
        set("AAGenLineWidth", row.lineWidth);
        set("AAGenHeight", row.height);
        ASSERT_EQ(start(3), 0);
        EXPECT_EQ(buffers.wait(3, 20), 3);
        EXPECT_EQ((buffers.ofPicture(3)->stamp - buffers.ofPicture(2)->stamp).count(), row.periodNs);
    }
}

TEST_F(GeneratorTest, ADisabledCameraPortStopsTheCamera) {
    set("AACamPortEnable", 0);
    BufferSet& buffers = addBuffers(1);
    ASSERT_EQ(start(1), 0);
    EXPECT_EQ(buffers.wait(1, 1), kTimeOut);
    EXPECT_EQ(mBoard.cameraStatus(0), 7) << "the link is up all the same";
    set("AACamPortEnable", 1);
    EXPECT_EQ(buffers.wait(1, 20), 1);
}

}  // namespace
