#include <algorithm>
#include <string>
#include <vector>

#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

/// Of every window, generated picture and camera picture: a whole number of steps for every geometry.
constexpr uint32_t kWidth = 128;
constexpr uint32_t kHeight = 96;

std::vector<std::string> geometryNames() {
    std::vector<std::string> names{"SMODE_UNCHANGED", "SMODE_REVERSE"};
    for (int i = 0; i <= 21; ++i) names.push_back("SMODE_TAB8_" + std::to_string(i));
    return names;
}

class PictureSourceTest : public testing::Test {
protected:
    /// Runs the tool as fast as the machine can and reads what it has saved.
    std::vector<GrayPicture> acquire(int count, const Arguments& options, const Arguments& settings) {
        const std::filesystem::path folder = mFolder / "out";
        std::filesystem::remove_all(folder);
        Arguments arguments{"acquire", "-n", std::to_string(count), "--output", (folder / "p%d.pgm").string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(),
                         {"--set", "FG_WIDTH=" + std::to_string(kWidth), "FG_HEIGHT=" + std::to_string(kHeight)});
        arguments.insert(arguments.end(), settings.begin(), settings.end());
        mResult = runTool(arguments, kFast);
        EXPECT_EQ(mResult.exitCode, 0) << mResult.errors;
        return std::filesystem::exists(folder) ? readFolder(folder) : std::vector<GrayPicture>();
    }

    std::vector<GrayPicture> generate(int count, const Arguments& settings = {}) {
        Arguments all{"FG_GEN_WIDTH=" + std::to_string(kWidth), "FG_GEN_HEIGHT=" + std::to_string(kHeight)};
        all.insert(all.end(), settings.begin(), settings.end());
        std::vector<GrayPicture> pictures = acquire(count, {"--generator"}, all);
        EXPECT_THAT(pictures, SizeIs(count));
        pictures.resize(static_cast<size_t>(count));
        return pictures;
    }

    std::string textures(uint32_t count) { return writeTextures(mFolder / "camera", count, kWidth, kHeight); }

    TemporaryFolder mFolder;
    ToolResult mResult;
};

TEST_F(PictureSourceTest, GeneratorPicturesMoveByTheirRoll) {
    const std::vector<GrayPicture> still = generate(3);
    const auto [darkest, brightest] = std::minmax_element(still[0].pixels.begin(), still[0].pixels.end());
    EXPECT_GT(*brightest - *darkest, 100) << "there is nothing to see";
    EXPECT_EQ(still[1], still[0]);
    EXPECT_EQ(still[2], still[0]);
    const std::vector<GrayPicture> rolled = generate(3, {"FG_GEN_ROLL=5"});
    for (uint32_t i = 1; i < 3; ++i) {
        EXPECT_NE(rolled[i], rolled[i - 1]);
        EXPECT_EQ(rolled[i].crop(5, 0, kWidth - 5, kHeight), rolled[i - 1].crop(0, 0, kWidth - 5, kHeight));
    }
}

TEST_F(PictureSourceTest, GeneratorTapsThatAreOffAreBlackColumns) {
    const GrayPicture whole = generate(1).front();
    for (uint32_t tap = 1; tap <= 4; ++tap) {
        SCOPED_TRACE(tap);
        GrayPicture expected = whole;
        for (size_t i = tap - 1; i < expected.pixels.size(); i += 4) expected.pixels[i] = 0;
        ASSERT_NE(expected, whole);
        EXPECT_EQ(generate(1, {"FG_GEN_TAP" + std::to_string(tap) + "=FG_OFF"}).front(), expected);
    }
}

TEST_F(PictureSourceTest, MatchingReadoutRestoresEveryGeometryAndUnchangedDoesNot) {
    const std::string camera = textures(2);
    const std::vector<GrayPicture> inputs = readFolder(camera);
    for (const std::string& geometry : geometryNames()) {
        SCOPED_TRACE(geometry);
        const Arguments options{"--camera", camera, "--geometry", geometry};
        EXPECT_EQ(acquire(2, options, {"FG_SENSORREADOUT=" + geometry}), inputs);
        if (geometry == "SMODE_UNCHANGED") continue;
        const std::vector<GrayPicture> unsorted = acquire(2, options, {"FG_SENSORREADOUT=SMODE_UNCHANGED"});
        ASSERT_THAT(unsorted, SizeIs(2));
        EXPECT_NE(unsorted[0], inputs[0]);
        EXPECT_NE(unsorted[1], inputs[1]);
    }
}

TEST_F(PictureSourceTest, FramesThatTheSelectorLeavesOutAreNoLoss) {
    const std::string camera = textures(3);
    const std::vector<GrayPicture> inputs = readFolder(camera);
    EXPECT_EQ(acquire(4, {"--camera", camera}, {"FG_IMG_SELECT_PERIOD=2", "FG_IMG_SELECT=1"}),
              (std::vector{inputs[1], inputs[0], inputs[2], inputs[1]}));
    EXPECT_THAT(mResult.output, HasSubstr("lost        0"));
    const ToolResult none =
        runTool({"acquire", "--timeout", "1", "--set", "FG_IMG_SELECT_PERIOD=2", "FG_IMG_SELECT=2"});
    EXPECT_EQ(none.exitCode, 3);
    EXPECT_THAT(none.errors, HasSubstr("FG_IMG_SELECT = 2 chooses no frame out of FG_IMG_SELECT_PERIOD = 2"));
}

TEST_F(PictureSourceTest, UnknownGeometriesAndTwoSourcesAreRefused) {
    for (const std::string name : {"SMODE_TAB8_22", "SMODE_TAB8_", "52", "-1"}) {
        SCOPED_TRACE(name);
        const ToolResult result = runTool({"acquire", "--geometry=" + name});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, AllOf(HasSubstr("TAVO_SIM_GEOMETRY"), HasSubstr(name)));
        EXPECT_THAT(result.output, IsEmpty());
    }
    EXPECT_EQ(runTool({"acquire", "--generator", "--camera", textures(1)}).exitCode, 2);
    EXPECT_EQ(runTool({"acquire", "--generator", "--geometry", "SMODE_REVERSE"}).exitCode, 2);
}

}  // namespace
}  // namespace tooltest
