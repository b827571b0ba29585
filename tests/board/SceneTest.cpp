#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulation/board/Scene.h"

using namespace simulation;

namespace {

TEST(SceneTest, IsTheSameInEveryRunAndMovesFromFrameToFrame) {
    std::string why;
    const auto scene = Scene::create({320, 240}, why);
    const auto other = Scene::create({320, 240}, why);
    const std::vector<uint8_t> first = scene->frame(1).pixels;
    std::vector<uint8_t> previous = first;
    for (uint64_t number = 2; number < 300; ++number) {
        const std::vector<uint8_t>& now = scene->frame(number).pixels;
        ASSERT_NE(now, previous) << number;
        previous = now;
    }
    EXPECT_EQ(other->frame(299).pixels, previous) << "drawn without the frames before";
    EXPECT_EQ(scene->frame(1).pixels, first);
}

TEST(SceneTest, TheFrameNumberIsReadable) {
    std::string why;
    const Picture picture = Scene::create({256, 256}, why)->frame(1);
    // Digit 1 of 5 x 7 dots, 2 pixels a dot, behind the corner and one dot.
    const char* const kRows[] = {"..#..", ".##..", "..#..", "..#..", "..#..", "..#..", ".###."};
    for (uint32_t row = 0; row < 7; ++row) {
        for (uint32_t column = 0; column < 5; ++column) {
            EXPECT_EQ(picture.line(34 + 2 * row)[34 + 2 * column], kRows[row][column] == '#' ? 255 : 0);
        }
    }
}

}  // namespace
