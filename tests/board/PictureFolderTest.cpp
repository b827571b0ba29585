#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "board/TemporaryFolder.h"
#include "simulation/board/PictureSource.h"

using namespace simulation;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr const char* kShippedPictures = QUILLON_SOURCE "/simulation/pictures";

class PictureFolderTest : public testing::Test {
protected:
    std::unique_ptr<PictureFolder> open() { return PictureFolder::open(mFolder.path(), mWhy); }

    TemporaryFolder mFolder;
    std::string mWhy;
};

TEST_F(PictureFolderTest, ShowsPgmPicturesInTheOrderOfTheirNamesForEver) {
    mFolder.write("b.PGM", "P5\n# a comment\n2 1\n255\nCD");
    mFolder.write("a.pgm", "P5 2 1 255 AB");
    mFolder.write("readme.txt", "no picture");
    const auto source = open();
    ASSERT_NE(source, nullptr) << mWhy;
    EXPECT_EQ(source->size(), (PictureSize{2, 1}));
    EXPECT_THAT(source->frame(1).pixels, ElementsAre('A', 'B'));
    EXPECT_THAT(source->frame(2).pixels, ElementsAre('C', 'D'));
    EXPECT_THAT(source->frame(3).pixels, ElementsAre('A', 'B'));
}

TEST_F(PictureFolderTest, RefusesBrokenPicturesByName) {
    const char* const kBroken[] = {
        "",
        "P5",
        "P5 2 1 255 A",
        "P2 2 1 255 1 2",
        "P5 0 1 255 ",
        "P5 2 1 65535 AABB",
        "P5 -2 1 255 AB",
        "P5 2 1 15 AB",
        "P5 99999999999 1 255 AB",
        "P5 65536 65536 255 A",
        "#",
        "P6 2 1 255 ABABAB",
    };
    for (const char* content : kBroken) {
        SCOPED_TRACE(content);
        mFolder.write("broken.pgm", content);
        EXPECT_EQ(open(), nullptr);
        EXPECT_THAT(mWhy, HasSubstr("broken.pgm: "));
    }
}

TEST_F(PictureFolderTest, RefusesAnotherSizeWithTheFileAndBothSizes) {
    mFolder.write("a.pgm", "P5 2 1 255 AB");
    mFolder.write("b.pgm", "P5 1 2 255 AB");
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(mWhy, AllOf(HasSubstr("b.pgm"), HasSubstr("1x2"), HasSubstr("2x1")));
}

TEST_F(PictureFolderTest, RefusesFoldersWithoutPictures) {
    mFolder.write("notes.txt", "P5 2 1 255 AB");
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(mWhy, HasSubstr("holds no PNG or PGM pictures"));
    EXPECT_EQ(PictureFolder::open(mFolder.path() / "none", mWhy), nullptr);
    EXPECT_THAT(mWhy, HasSubstr("none: the picture folder cannot be read"));
    std::filesystem::create_directory(mFolder.path() / "folder.png");
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(mWhy, HasSubstr("folder.png: cannot be read"));
}

#ifdef QUILLON_PNG

std::string fileContent(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(PictureFolderTest, ReadsTheShippedPictures) {
    const auto source = PictureFolder::open(kShippedPictures, mWhy);
    ASSERT_NE(source, nullptr) << mWhy;
    EXPECT_EQ(source->size(), (PictureSize{1280, 1024}));
    const Picture first = source->frame(1);
    EXPECT_NE(source->frame(2).pixels, first.pixels);
    EXPECT_EQ(source->frame(5).pixels, first.pixels) << "there are four";
    EXPECT_EQ(first.line(0)[0], 16) << "the corners have their marks";
    EXPECT_EQ(first.line(0)[12], 240);
    EXPECT_EQ(first.line(0)[1279], 240);
    EXPECT_EQ(first.line(1023)[0], 240);
}

TEST_F(PictureFolderTest, SurvivesDamagedPngFiles) {
    const std::string sound = fileContent(std::filesystem::path(kShippedPictures) / "gears_1.png");
    ASSERT_GT(sound.size(), 1000u);
    for (size_t length = 0; length < sound.size(); length += 1 + length / 5) {
        mFolder.write("cut.png", sound.substr(0, length));
        EXPECT_EQ(open(), nullptr) << length;
        EXPECT_THAT(mWhy, HasSubstr("cut.png: "));
    }
    for (size_t place : {0u, 8u, 17u, 25u, 30u, 45u, 500u, 20000u}) {
        std::string damaged = sound;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
        mFolder.write("cut.png", damaged);
        EXPECT_EQ(open(), nullptr) << place;
    }
}

TEST_F(PictureFolderTest, TurnsColoursIntoBrightness) {
    // The applet's icon: 8-bit RGBA of 32 x 32 pixels, dark blue at the bottom.
    const auto icon = std::filesystem::path(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon_icon.png");
    mFolder.write("icon.png", fileContent(icon));
    const auto source = open();
    ASSERT_NE(source, nullptr) << mWhy;
    EXPECT_EQ(source->size(), (PictureSize{32, 32}));
    const uint8_t darkBlue = source->frame(1).line(30)[16];
    EXPECT_GT(darkBlue, 40);
    EXPECT_LT(darkBlue, 90);
}

#else

TEST_F(PictureFolderTest, SaysThatThisBuildReadsNoPng) {
    EXPECT_EQ(PictureFolder::open(kShippedPictures, mWhy), nullptr);
    EXPECT_THAT(mWhy, HasSubstr("this build reads no PNG pictures"));
}

#endif

}  // namespace
