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

TEST(SceneTest, EveryCornerHasAPatternOfItsOwn) {
    std::string why;
    const Picture picture = Scene::create({640, 512}, why)->frame(1);
    std::vector<std::vector<uint8_t>> corners;
    for (const auto& [x, y] : {
             std::pair{0u,   0u  },
             {576u, 0u  },
             {0u,   448u},
             {576u, 448u}
    }) {
        std::vector<uint8_t> corner;
        for (uint32_t row = y; row < y + 64; ++row) {
            corner.insert(corner.end(), picture.line(row) + x, picture.line(row) + x + 64);
        }
        for (const auto& other : corners) EXPECT_NE(corner, other);
        EXPECT_THAT(corner, testing::Contains(20));
        EXPECT_THAT(corner, testing::Contains(235));
        corners.push_back(corner);
    }
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

TEST(SceneTest, RefusesSizesThatNoSensorHas) {
    std::string why;
    for (const PictureSize size : {
             PictureSize{15,    16   },
             {16,    15   },
             {0,     0    },
             {65537, 16   },
             {65536, 65536}
    }) {
        why.clear();
        EXPECT_EQ(Scene::create(size, why), nullptr);
        EXPECT_THAT(why, testing::HasSubstr(std::to_string(size.width) + "x" + std::to_string(size.height)));
    }
    EXPECT_NE(Scene::create({16, 16}, why)->frame(4'000'000'000).pixels.size(), 0u);
}

}  // namespace
