#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "simulation/board/PictureSource.h"
#include "tests/TemporaryFolder.h"

using namespace simulation;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

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
        "P5 2 1 255 A",
        "P2 2 1 255 1 2",
        "P5 0 1 255 ",
        "P5 2 1 65535 AABB",
        "P5 65536 65536 255 A",
        "P6 2 1 255 ABABAB",
    };
    for (const char* content : kBroken) {
        SCOPED_TRACE(content);
        mFolder.write("broken.pgm", content);
        EXPECT_EQ(open(), nullptr);
        EXPECT_THAT(mWhy, HasSubstr("broken.pgm: "));
    }
}

#ifdef QUILLON_PNG

TEST_F(PictureFolderTest, TurnsColoursIntoBrightness) {
    // The applet's icon: 8-bit RGBA of 32 x 32 pixels, dark blue at the bottom.
    std::filesystem::copy(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon_icon.png", mFolder / "icon.png");
    const auto source = open();
    ASSERT_NE(source, nullptr) << mWhy;
    EXPECT_EQ(source->size(), (PictureSize{32, 32}));
    const uint8_t darkBlue = source->frame(1).line(30)[16];
    EXPECT_GT(darkBlue, 40);
    EXPECT_LT(darkBlue, 90);
}

#else

TEST_F(PictureFolderTest, SaysThatThisBuildReadsNoPng) {
    EXPECT_EQ(PictureFolder::open(QUILLON_SOURCE "/simulation/pictures", mWhy), nullptr);
    EXPECT_THAT(mWhy, HasSubstr("this build reads no PNG pictures"));
}

#endif

}  // namespace
