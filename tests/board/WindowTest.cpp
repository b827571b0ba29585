#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulation/board/Window.h"

using namespace simulation;
using testing::Each;

namespace {

size_t cut(const Window& window, const Picture& picture, std::span<uint8_t> target, const LineOrder& order = {}) {
    PictureFrame frame(picture);
    return cutWindow(window, frame, order, PixelCurve(), target);
}

/// A picture whose pixels tell where they are.
Picture numbered(uint32_t width, uint32_t height) {
    Picture picture{
        {width, height},
        std::vector<uint8_t>(width * height)
    };
    for (size_t i = 0; i < picture.pixels.size(); ++i) picture.pixels[i] = static_cast<uint8_t>(1 + i * 7 % 251);
    return picture;
}

uint8_t expectedAt(const Picture& picture, uint32_t x, uint32_t y) {
    return x < picture.size.width && y < picture.size.height ? picture.pixels[y * picture.size.width + x] : 0;
}

TEST(WindowTest, TheWindowCutsExactlyAndIsZeroBeyondTheSensor) {
    const Picture picture = numbered(50, 20);
    for (const Window& window : {
             Window{0,       0,     {50, 20}},
             Window{16,      3,     {32, 4} },
             Window{48,      19,    {16, 1} },
             Window{32,      10,    {64, 30}},
             Window{50,      0,     {16, 2} },
             Window{0,       20,    {16, 2} },
             Window{1048560, 65535, {16, 16}}
    }) {
        SCOPED_TRACE(testing::Message() << window.x << "," << window.y << " " << window.size.width);
        std::vector<uint8_t> target(window.size.width * window.size.height, 0xEE);
        ASSERT_EQ(cut(window, picture, target), target.size());
        for (uint32_t i = 0; i < target.size(); ++i) {
            ASSERT_EQ(target[i],
                      expectedAt(picture, window.x + i % window.size.width, window.y + i / window.size.width))
                << i;
        }
    }
}

TEST(WindowTest, WhatDoesNotFitIsCutOffWithinALine) {
    const Picture picture = numbered(64, 64);
    std::vector<uint8_t> target(100, 0xEE);
    EXPECT_EQ(cut(
                  {
                      0, 0, {64, 64}
    },
                  picture, std::span(target).first(70)),
              70u);
    EXPECT_EQ(target[69], expectedAt(picture, 5, 1));
    EXPECT_THAT(std::span(target).subspan(70), Each(0xEE));
    EXPECT_EQ(cut(
                  {
                      0, 0, {1048576, 65536}
    },
                  picture, target),
              100u)
        << "the largest window";
    EXPECT_EQ(cut(
                  {
                      0, 0, {16, 1}
    },
                  picture, std::span(target).first(0)),
              0u);
}

}  // namespace
