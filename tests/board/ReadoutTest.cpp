#include <array>
#include <numeric>

#include "board/StageFixture.h"
#include "simulation/board/Scene.h"
#include "simulation/board/TapSorter.h"

using namespace simulation;

namespace {

struct ReadoutRow {
    int geometry;
    TapSorter::Values registers;
};

// What a host writes for some geometries, in the order of the registers.
constexpr std::array kRows{
    ReadoutRow{0,  {0x0, 0x00, 0x00, 0xE4E4, 1, 0x76543210, 0xFEDCBA98}},
    ReadoutRow{3,  {0x0, 0x11, 0x11, 0xE4E4, 1, 0xEFCDAB89, 0x67452301}},
    ReadoutRow{30, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xEFCD6745}},
    ReadoutRow{31, {0x0, 0x10, 0x10, 0xE4E4, 0, 0xBA983210, 0xDCFE5476}},
    ReadoutRow{43, {0xF, 0xFF, 0xFF, 0x1B1B, 0, 0x7F6E5D4C, 0x3B2A1908}},
};

constexpr const char* kNames[]{"TapNumber",       "TapDirection",      "ReadOutMirror",    "ReadOutTapOrder",
                               "InsertionBypass", "TapSortingSchemaA", "TapSortingSchemaB"};

/// The columns of a line of 16 pixels in the order in which they leave the camera.
std::vector<uint8_t> sent(int geometry) {
    std::vector<uint8_t> line(16);
    std::iota(line.begin(), line.end(), uint8_t{0});
    std::vector<uint8_t> delivered(16);
    deliveryOrder(*findGeometry(geometry), 16).copy(line.data(), 0, delivered);
    return delivered;
}

TEST(ReadoutGeometryTest, TheCameraSendsOnePixelOfEachTapInAClock) {
    EXPECT_THAT(sent(0), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    EXPECT_THAT(sent(3), ElementsAre(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
    EXPECT_THAT(sent(30), ElementsAre(0, 1, 2, 3, 15, 14, 13, 12, 4, 5, 6, 7, 11, 10, 9, 8)) << "|1234> <8765|";
    EXPECT_THAT(sent(32), ElementsAre(0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15)) << "|1234> 5678>|";
    EXPECT_THAT(sent(34), ElementsAre(15, 14, 11, 10, 7, 6, 3, 2, 13, 12, 9, 8, 5, 4, 1, 0)) << "|<87 <65 <43 <21|";
    EXPECT_THAT(sent(42), ElementsAre(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15)) << "|1> 2> ... 8>|";
    EXPECT_THAT(sent(50), ElementsAre(1, 3, 5, 7, 8, 10, 12, 14, 0, 2, 4, 6, 9, 11, 13, 15)) << "|<1 .. <4 5> .. 8>|";
}

class ReadoutTest : public StageFixture {
protected:
    void setSorter(const TapSorter::Values& registers) {
        for (size_t i = 0; i < registers.size(); ++i) set(kNames[i], registers[i]);
    }
    std::vector<uint8_t> scene() {
        std::string why;
        return Scene::create({64, 32}, why)->frame(1).pixels;
    }
};

TEST_F(ReadoutTest, AGeometryIsSortedByItsOwnRegisterValuesAlone) {
    const std::vector<uint8_t> expected = scene();
    for (const ReadoutRow& row : kRows) {
        SCOPED_TRACE(row.geometry);
        ASSERT_EQ(mBoard.setGeometry(row.geometry).code, 0);
        for (const ReadoutRow& other : kRows) {
            setSorter(other.registers);
            ASSERT_EQ(acquire() == expected, other.geometry == row.geometry) << "sorted for " << other.geometry;
        }
    }
}

TEST_F(ReadoutTest, TheWindowIsCutOutOfTheSortedLine) {
    ASSERT_EQ(mBoard.setGeometry(43).code, 0);
    setSorter(kRows.back().registers);
    set("AAAreaWidth", 1);
    set("AAAreaHeight", 0);
    const std::vector<uint8_t> picture = acquire();
    const std::vector<uint8_t> expected = scene();
    EXPECT_TRUE(std::equal(picture.begin(), picture.begin() + 32, expected.begin()));
}

TEST_F(ReadoutTest, RefusesWhatCannotBeReadOut) {
    EXPECT_EQ(mBoard.setGeometry(2).code, kBadSetting);
    EXPECT_THAT(mBoard.setGeometry("tab").text, AllOf(HasSubstr("tab"), HasSubstr("SMODE_TAB8_0 (30)")));
    ASSERT_EQ(mBoard.setGeometry(30).code, 0);
    const Outcome narrow = mBoard.setScene({72, 32});
    EXPECT_EQ(narrow.code, kBadSetting);
    EXPECT_THAT(narrow.text, AllOf(HasSubstr("SMODE_TAB8_0"), HasSubstr("72"), HasSubstr("multiple of 16")));
    setSorter(kRows[2].registers);
    EXPECT_EQ(acquire(), scene()) << "a refusal changes nothing";
    ASSERT_EQ(mBoard.setGeometry(0).code, 0);
    EXPECT_NE(acquire(), scene()) << "the camera has changed, the sorter has not";
    ASSERT_EQ(mBoard.setScene({72, 32}).code, 0);
    EXPECT_EQ(mBoard.setGeometry(30).code, kBadSetting);
    const std::vector<uint8_t> picture = acquire();
    setSorter(kRows[0].registers);
    EXPECT_EQ(picture, acquire()) << "such a width is not sorted";
    ASSERT_EQ(start(-1), 0);
    EXPECT_EQ(mBoard.setGeometry(0).code, kBusy);
}

}  // namespace
