#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "host/KneeCurve.h"
#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

class LutTest : public testing::Test {
protected:
    /// Writes a file of one gray table; point i of it has the output \p step * i.
    void writeLut(const std::string& name, double step) const {
        std::ofstream stream(mFolder / name);
        stream << "# KneeLut data file v1.0\n\n[gray]\n\n";
        for (int i = 0; i <= 1024; ++i) stream << i << ',' << std::to_string(step * i) << ";\n";
    }

    TemporaryFolder mFolder;
};

TEST_F(LutTest, ProcessingTakesItsStepsInOrder) {
    using quillon::host::processCurve;
    EXPECT_THAT(processCurve({0.0, 0.25, 1.0}, {0.0, 1.0, 2.0, false}), ElementsAre(0.0, 0.5, 1.0));
    EXPECT_THAT(processCurve({0.0, 0.25, 1.0}, {0.0, 1.0, 0.5, true}), ElementsAre(1.0, 0.0625, 0.0));
    EXPECT_THAT(processCurve({0.0, 0.25, 0.5}, {0.25, 2.0, 1.0, false}), ElementsAre(0.5, 1.0, 1.0));
    EXPECT_THAT(processCurve({0.0, 0.5, 1.0}, {-0.25, 1.0, 2.0, false}),
                ElementsAre(0.0, 0.5, testing::DoubleNear(0.866025, 1e-6)));
    EXPECT_THAT(processCurve({0.0, 0.5, 1.0}, {0.0, 1.0, 0.0, false}), ElementsAre(0.0, 0.0, 1.0));
}

TEST_F(LutTest, ShowDrawsTheCurveThatTakesEffect) {
    const ToolResult straight = runTool({"lut", "show", "--output", mFolder.file("straight.png")});
    ASSERT_EQ(straight.exitCode, 0) << straight.errors;
    EXPECT_THAT(straight.output, ContainsRegex("\n0.250 +0.250000 +0.250000\n"));
    const ToolResult bent =
        runTool({"lut", "show", "--output", mFolder.file("bent.png"), "--set", "FG_KNEE_LUT_GAMMA=2"});
    ASSERT_EQ(bent.exitCode, 0) << bent.errors;
    EXPECT_THAT(bent.output, AllOf(HasSubstr("offset 0, gain 1, gamma 2, not inverted\n"),
                                   ContainsRegex("\n0.250 +0.250000 +0.500000\n")));
    const GrayPicture first = readPicture(mFolder.file("straight.png"));
    const GrayPicture second = readPicture(mFolder.file("bent.png"));
    EXPECT_NE(first, second);
    // The plot begins at (84, 68) and has a side of 512: a quarter of the input stands in column 212.
    const auto at = [](const GrayPicture& picture, uint32_t x, uint32_t y) {
        return picture.crop(x, y, 1, 1).pixels[0];
    };
    EXPECT_EQ(at(first, 212, 452), 0);
    EXPECT_EQ(at(second, 212, 452), 150);
    EXPECT_EQ(at(second, 212, 324), 0);
    EXPECT_EQ(at(first, 212, 330), 215);
}

TEST_F(LutTest, SavedCurvesAreLoadedAgain) {
    writeLut("half.lut", 0.5 / 1024);
    const ToolResult loaded = runTool({"lut", "load", mFolder.file("half.lut"), "--set", "knee_lut_scale=2"});
    ASSERT_EQ(loaded.exitCode, 0) << loaded.errors;
    EXPECT_THAT(loaded.output, ContainsRegex("\n1.000 +0.500000 +1.000000\n"));
    ASSERT_EQ(runTool({"set", "--config", mFolder.file("camera.mcf"), "--create",
                       "FG_KNEE_LUT_FILE=" + mFolder.file("half.lut"), "FG_KNEE_LUT_SAVE_LOAD_FILE=load_lut_from_file"})
                  .exitCode,
              0);
    const ToolResult saved =
        runTool({"lut", "save", mFolder.file("again.lut"), "--config", mFolder.file("camera.mcf")});
    ASSERT_EQ(saved.exitCode, 0) << saved.errors;
    const std::string json =
        runTool({"lut", "save", mFolder.file("again.lut"), "--config", mFolder.file("camera.mcf"), "--json"}).output;
    EXPECT_EQ(nlohmann::json::parse(json)["file"], mFolder.file("again.lut"));
    EXPECT_THAT(runTool({"lut", "load", mFolder.file("again.lut")}).output,
                ContainsRegex("\n0.500 +0.250000 +0.250000\n"));
    EXPECT_THAT(runTool({"diff", mFolder.file("camera.mcf")}).output,
                ContainsRegex("FG_KNEE_LUT0 +[0-9.]+ at point 1 +[0-9.]+ at point 1, the first of 1024 that differ"));
    EXPECT_THAT(filesIn(mFolder.path()), ElementsAre("again.lut", "camera.mcf", "half.lut"));
}

TEST_F(LutTest, RefusedFilesAreNamedWithReason) {
    std::filesystem::create_directory(mFolder / "folder.lut");
    for (const auto& [name, exitCode, reason] : std::vector<std::tuple<std::string, int, std::string>>{
             {"curve.LUT", 2, "does not contain \".lut\"; name it for example curve.lut"},
             {"absent.lut", 3, "there is no such file"},
             {"folder.lut", 3, "it is a folder"},
             {"absent/curve.lut", 3, "there is no such file"},
             {std::string(250, 'x') + ".lut", 3, "there is no such file"},
    }) {
        SCOPED_TRACE(name);
        const ToolResult result = runTool({"lut", "load", mFolder.file(name)});
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_THAT(result.errors, AllOf(HasSubstr(mFolder.file(name)), HasSubstr(reason)));
    }
    for (const Arguments& arguments : {
             Arguments{"lut"},
             {"lut", "load"},
             {"lut", "save", mFolder.file("curve.txt")}
    }) {
        EXPECT_EQ(runTool(arguments).exitCode, 2);
    }
    EXPECT_EQ(runTool({"lut", "save", mFolder.file("absent/curve.lut")}).exitCode, 3);
    mFolder.write("text.lut", "no table at all\n");
    const ToolResult text = runTool({"lut", "load", mFolder.file("text.lut")});
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.errors, AllOf(HasSubstr("every point is 0"), HasSubstr("text.lut")));
}

}  // namespace
}  // namespace tooltest
