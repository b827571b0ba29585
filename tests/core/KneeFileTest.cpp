#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "tests/core/KneeLutTest.h"

using testing::IsEmpty;
using testing::SizeIs;

namespace {

using KneeFileTest = KneeLutTest;

// ---- LUT files

TEST_F(KneeFileTest, ActionsSaveAndLoadTheGrayTable) {
    EXPECT_EQ(setText(FG_KNEE_LUT_FILE, files.path("a.lut")), 0);
    EXPECT_THAT(board.writes(), SizeIs(7168));
    EXPECT_EQ(setCurve(level(0.125)), 0);
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 1), 0);
    EXPECT_EQ(files.content("a.lut").substr(0, 52), "# KneeLut data file v1.0\n\n[gray]\n\n0,0.125000000000;\n");
    EXPECT_EQ(setCurve(level(1.0)), 0);
    board.clearEvents();
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 0), 0);
    EXPECT_EQ(curve(), level(0.125));
    EXPECT_EQ(segment(7, 7)[0], "AAKneeLutStart 8192");
}

TEST_F(KneeFileTest, ActionsSaveAndLoadThreeTables) {
    setColor(0);
    EXPECT_EQ(setText(FG_KNEE_LUT_FILE, files.path("c.lut")), 0);
    for (unsigned table : {0u, 1u, 2u}) EXPECT_EQ(setCurve(level(0.25 * table), table), 0);
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 1), 0);
    for (unsigned table : {0u, 1u, 2u}) EXPECT_EQ(setCurve(level(1.0), table), 0);
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 0), 0);
    EXPECT_EQ(curve(0), level(0.0));
    EXPECT_EQ(curve(1), level(0.25));
    EXPECT_EQ(curve(2), level(0.5));
}

TEST_F(KneeFileTest, RefusedActionsChangeNothing) {
    const auto act = [&](const std::string& name, int action) {
        EXPECT_EQ(setText(FG_KNEE_LUT_FILE, name), 0);
        board.clearEvents();
        return set(FG_KNEE_LUT_SAVE_LOAD_FILE, action);
    };
    EXPECT_EQ(act(" ", 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(" ", 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.path("none.lut"), 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(files.path("none.txt"), 0), FG_FILE_REJECTED);
    EXPECT_EQ(act(files.make("a.LUT", "[gray]\n0,1;\n"), 0), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.path("no/folder.lut"), 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(files.makeFull("full.lut"), 1), FG_FILE_NOT_ACCESSIBLE);
    EXPECT_EQ(act(std::string(2000, 'x') + ".lut", 0), FG_FILE_REJECTED);
    EXPECT_THAT(text(FG_KNEE_LUT_FILE), std::string(511, 'x'));
    EXPECT_THAT(board.writes(), IsEmpty());
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 2), FG_VALUE_OUT_OF_RANGE);
    EXPECT_EQ(curve()[512], 0.5);
}

TEST_F(KneeFileTest, FileWithoutTheSectionLoadsZeros) {
    EXPECT_EQ(setText(FG_KNEE_LUT_FILE, files.make("a.lut.bak", "[red]\n0,1;\n")), 0);
    EXPECT_EQ(set(FG_KNEE_LUT_SAVE_LOAD_FILE, 0), 0);
    EXPECT_EQ(curve(), level(0.0));
}

// ---- Lines in configuration files

TEST_F(KneeFileTest, SavesOneLineForEachCurve) {
    setColor(0);
    {
        const UniqueFile file(std::fopen(files.path("a.mcf").c_str(), "w"));
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

TEST_F(KneeFileTest, BrokenLinesDoNoHarm) {
    std::string tooMany = "[Port A]\nFG_KNEE_LUT0=";
    for (int i = 0; i < 1025; ++i) tooMany += "0.5,";
    const struct {
        const char* what;
        std::string content;
        double first, second;
    } cases[] = {
        {"empty", "", 0, 1.0 / 1024},
        {"no section", "FG_KNEE_LUT0=5, 6;\n", 0, 1.0 / 1024},
        {"only an earlier section", "FG_KNEE_LUT0=5;\n[Port A]\n", 0, 1.0 / 1024},
        {"another table", "[Port A]\nFG_KNEE_LUT1=5, 6;\n", 0, 1.0 / 1024},
        {"longer key", "[Port A]\nFG_KNEE_LUT00=5, 6;\n", 0, 1.0 / 1024},
        {"leading blank", "[Port A]\n FG_KNEE_LUT0=5, 6;\n", 0, 1.0 / 1024},
        {"no numbers", "[Port A]\nFG_KNEE_LUT0=;\n", 0, 1.0 / 1024},
        {"no end", "[Port A]\nFG_KNEE_LUT0=", 0, 1.0 / 1024},
        {"no end of line", "[Port A]\nFG_KNEE_LUT0=5", 5, 1.0 / 1024},
        {"CR LF", "[Port A]\r\nFG_KNEE_LUT0=5;\r\n", 5, 1.0 / 1024},
        {"words", "[Port A]\nFG_KNEE_LUT0=x, 7;\n", 0, 7},
        {"in a later section", "[Port A]\n[Port B]\nFG_KNEE_LUT0=5, 6;\n", 5, 6},
        {"more numbers than points", tooMany + "9, 9;\n", 0.5, 0.5},
        {"ten million characters", "[Port A]\nFG_KNEE_LUT0=5," + std::string(10'000'000, '1'), 5, 0},
    };
    for (const auto& [what, content, first, second] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(knee->setLut(0, *knee->getLut(1, 0)), 0);
        EXPECT_EQ(loadLines(content), 0);
        EXPECT_EQ(curve()[0], first);
        if (second != 0) {
            EXPECT_EQ(curve()[1], second);
        }
        EXPECT_THAT(curve(), SizeIs(1025));
    }
}

}  // namespace
