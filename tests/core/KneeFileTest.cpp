#include <algorithm>
#include <cmath>
#include <string>

#include "tests/core/KneeLutTest.h"

namespace {

using KneeFileTest = KneeLutTest;

// ---- LUT files

TEST_F(KneeFileTest, ActionsSaveAndLoadTheGrayTable) {
    EXPECT_EQ(setText(FG_KNEE_LUT_FILE, files.file("a.lut")), 0);
    EXPECT_THAT(board.writes(), SizeIs(7168));
    EXPECT_EQ(setCurve(level(0.125)), 0);
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 1), 0);
    EXPECT_EQ(files.content("a.lut").substr(0, 52), "# KneeLut data file v1.0\n\n[gray]\n\n0,0.125000000000;\n");
    EXPECT_EQ(setCurve(level(1.0)), 0);
    board.clearEvents();
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 0), 0);
    EXPECT_EQ(curve(), level(0.125));
    EXPECT_EQ(knee->getLut(0, 0)->format, 3U);
    EXPECT_EQ(segment(7, 7)[0], "AAKneeLutStart 8192");
}

TEST_F(KneeFileTest, RefusedActionsChangeNothing) {
    const auto act = [&](const std::string& name, int action) {
        EXPECT_EQ(setText(FG_KNEE_LUT_FILE, name), 0);
        board.clearEvents();
        return set(FG_KNEE_LUT_SAVE_LOAD_FILE, action);
    };
    EXPECT_EQ(act(" ", 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(" ", 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.file("none.lut"), 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(files.file("none.txt"), 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(files.write("a.LUT", "[gray]\n0,1;\n"), 0), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.file("no/folder.lut"), 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.makeFull("full.lut"), 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(std::string(2000, 'x') + ".lut", 0), FG_FILE_REJECTED);
    EXPECT_THAT(text(FG_KNEE_LUT_FILE), std::string(511, 'x'));
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 2), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(curve()[512], 0.5);
}

// ---- Lines in configuration files

TEST_F(KneeFileTest, SavesOneLineForEachCurve) {
    setColor(0);
    {
        const UniqueFile file(std::fopen(files.file("a.mcf").c_str(), "w"));
        EXPECT_EQ(knee->saveParmeter(0, FG_KNEE_LUT, "FG_KNEE_LUT", file.get()), 0);
        EXPECT_EQ(knee->saveParmeter(0, FG_KNEE_LUT_FILE, "FG_KNEE_LUT_FILE", file.get()), FG_INVALID_ARGUMENT);
    }
    const std::string content = files.content("a.mcf");
    EXPECT_EQ(content.substr(0, 60), "FG_KNEE_LUT0=0.000000000000, 0.000976562500, 0.001953125000,");
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 3);
    EXPECT_NE(content.find(", 1.000000000000;\nFG_KNEE_LUT1=0.000000000000, "), std::string::npos);
    EXPECT_EQ(content.substr(content.size() - 17), " 1.000000000000;\n");
}

TEST_F(KneeFileTest, LoadsTheLinesOfItsPort) {
    setColor(1);
    EXPECT_EQ(loadLines("[Port A]\nFG_KNEE_LUT0=0.5, 0.5;\n[Port B]\nFG_KNEE_LUT1=0.25, 0.125;\n"
                        "FG_KNEE_LUT0=1e300, nan, -3;\n",
                        1),
              0);
    EXPECT_EQ(curve(1, 1)[0], 0.25);
    EXPECT_EQ(curve(1, 1)[1], 0.125);
    EXPECT_EQ(curve(1, 1)[2], 2.0 / 1024);  // points that the line lacks stay
    EXPECT_EQ(curve(0, 1)[0], 1e300);
    EXPECT_TRUE(std::isnan(curve(0, 1)[1]));
    EXPECT_EQ(curve(0, 1)[2], -3.0);
    EXPECT_EQ(curve(2, 1)[1024], 1.0);  // a curve without a line stays
    EXPECT_EQ(curve(0, 0)[1], 1.0 / 1024);
    EXPECT_THAT(board.writes(), IsEmpty());
}

}  // namespace
