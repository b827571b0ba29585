#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

const std::string kDemoPictures = QUILLON_SOURCE "/simulation/pictures";

struct Window {
    uint32_t width, height, x, y;
};

Arguments acquireArguments(const std::string& camera, const std::string& output, int count, const Window& window) {
    Arguments arguments{"acquire", "--camera", camera, "--output", output, "-n", std::to_string(count)};
    for (const auto& [name, value] : {
             std::pair{"FG_WIDTH=",   window.width },
             {"height=",     window.height},
             {"fg_xoffset=", window.x     },
             {"YOffset=",    window.y     }
    }) {
        arguments.insert(arguments.end(), {"--set", name + std::to_string(value)});
    }
    return arguments;
}

/// The window of every input picture; the test is worth something only when no two of them are equal.
std::vector<GrayPicture> cropsOf(const std::vector<GrayPicture>& inputs, const Window& window) {
    std::vector<GrayPicture> crops;
    for (const GrayPicture& input : inputs) {
        crops.push_back(input.crop(window.x, window.y, window.width, window.height));
    }
    return crops;
}

class AcquireTest : public testing::Test {
protected:
    /// Acquires \p count pictures and expects the window of one input after another, from the first one on.
    void expectCrops(const std::string& camera, const std::string& ending, int count, const Window& window) {
        const std::vector<GrayPicture> crops = cropsOf(readFolder(camera), window);
        ASSERT_FALSE(crops.empty());
        for (size_t i = 1; i < crops.size(); ++i) ASSERT_NE(crops[i], crops[i - 1]);
        const std::filesystem::path folder = mFolder / ("out-" + ending);
        const ToolResult result =
            runTool(acquireArguments(camera, (folder / ("frame_%03d." + ending)).string(), count, window), kFast);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_THAT(result.output, HasSubstr(std::to_string(count) + " of " + std::to_string(count)));
        ASSERT_THAT(filesIn(folder), SizeIs(count));
        for (int number = 1; number <= count; ++number) {
            char name[32];
            snprintf(name, sizeof(name), "frame_%03d.", number);
            SCOPED_TRACE(name);
            const GrayPicture written = readPicture(folder / (name + ending));
            EXPECT_EQ(written, crops[static_cast<size_t>(number - 1) % crops.size()]);
        }
    }

    /// Makes a camera folder of different textures.
    std::string textures(uint32_t count, uint32_t side) { return writeTextures(mFolder / "camera", count, side, side); }

    std::string outputPattern() const { return mFolder.file("out/p%d.pgm"); }
    std::vector<std::string> outputs() const { return filesIn(mFolder / "out"); }

    TemporaryFolder mFolder;
};

TEST_F(AcquireTest, DemoPicturesArriveCutAsSet) {
    const std::vector<GrayPicture> inputs = readFolder(kDemoPictures);
    ASSERT_FALSE(inputs.empty());
    const uint32_t width = inputs.front().width / 2 / 16 * 16;
    const uint32_t height = inputs.front().height / 2 + 1;
    const auto count = static_cast<int>(inputs.size()) + 3;
    expectCrops(kDemoPictures, "png", count, {width, height, 16, 7});
    expectCrops(kDemoPictures, "pgm", count, {width, height, 48, 13});
}

TEST_F(AcquireTest, InterruptKeepsCompleteFilesAndPrintsStatistics) {
    const std::string camera = textures(2, 64);
    ToolProcess tool(toolPath(), acquireArguments(camera, outputPattern(), 0, {64, 64, 0, 0}), kFast);
    for (int i = 0; i < 2000 && outputs().size() < 5; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    tool.signal(SIGINT);
    const ToolResult result = tool.finish();
    EXPECT_EQ(result.exitCode, 130);
    EXPECT_THAT(result.output, AllOf(HasSubstr("pictures"), HasSubstr("MB/s"), HasSubstr("lost")));
    EXPECT_THAT(outputs(), AllOf(Not(IsEmpty()), Each(AllOf(StartsWith("p"), EndsWith(".pgm")))));
    for (const std::string& name : outputs()) {
        const auto seed = static_cast<uint32_t>(std::stoi(name.substr(1)) - 1) % 2;
        EXPECT_EQ(readPicture(mFolder / "out" / name), makeTexture(64, 64, seed)) << name;
    }
}

TEST_F(AcquireTest, CountsDroppedFramesAcrossTheWrapOfTagsAndTimeStamps) {
    const Environment disturbed{
        {"TAVO_SIM_MODE",             "fast"                },
        {"TAVO_SIM_DROP",             "10:7"                },
        {"TAVO_SIM_FIRST_TAG",        "2147483600"          },
        {"TAVO_SIM_FIRST_TIME_STAMP", "18446744073300000000"}
    };
    const ToolResult result = runTool({"acquire", "-n", "200", "--json"}, disturbed);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(HasSubstr("\"pictures\": 200"), HasSubstr("\"dropped\": 25"),
                                     HasSubstr("\"intervalMs\": 10.0,"), HasSubstr("\"rate\": 88.8")));
}

TEST_F(AcquireTest, FullDiskLeavesNoHalfPicture) {
    const std::string camera = textures(1, 256);
    for (const std::string ending : {"pgm", "png"}) {
        const ToolResult result =
            runOnFullDisk(8, "acquire -n 3 --camera " + camera + " --set WIDTH=256 HEIGHT=256 --output " +
                                 (mFolder / ("out/p%d." + ending)).string());
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, AllOf(HasSubstr("p1." + ending), HasSubstr("File too large")));
        EXPECT_THAT(outputs(), IsEmpty());
        EXPECT_THAT(result.output, HasSubstr("pictures    0 of 3"));
    }
}

TEST_F(AcquireTest, UnusableOutputsAreRefusedBeforeTheBoardOpens) {
    writePgm(mFolder / "file", makeTexture(1, 1, 0));
    const std::string file = mFolder.file("file");
    const ToolResult result = runTool({"acquire", "--output", file + "/p.png"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("cannot create the output folder " + file));
    for (const std::string pattern : {"p.png", "p%d.jpg", "p%d", "p%s.png", "p%d_%d.png", "p%", "p%99999999999d.png"}) {
        SCOPED_TRACE(pattern);
        const ToolResult refused = runTool({"acquire", "-n", "2", "--output", (mFolder / pattern).string()});
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_THAT(refused.errors, HasSubstr(pattern));
    }
}

TEST_F(AcquireTest, CameraFoldersWithoutUsablePicturesAreRefusedByName) {
    std::filesystem::create_directory(mFolder / "empty");
    std::filesystem::create_directory(mFolder / "broken");
    std::filesystem::copy(kDemoPictures, mFolder / "broken");
    const std::string victim = "gears_3.png";
    std::filesystem::resize_file(mFolder / "broken" / victim, 60);
    const std::string sizes = textures(2, 64);
    writePgm(std::filesystem::path(sizes) / "t2.pgm", makeTexture(80, 64, 1));
    const std::vector<std::pair<std::string, std::string>> cases{
        {mFolder.file("absent"), "absent"},
        {mFolder.file("empty"),  "empty" },
        {mFolder.file("broken"), victim  },
        {sizes,                  "t2.pgm"},
    };
    for (const auto& [folder, named] : cases) {
        SCOPED_TRACE(folder);
        const ToolResult result = runTool({"acquire", "--camera", folder});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, HasSubstr(named));
    }
}

TEST_F(AcquireTest, BoardFaultsEndWithTheirCode) {
    const ToolResult result = runTool(
        {
            "acquire"
    },
        {{"TAVO_SIM_FAULT", "TavoDmaStartRead:1:-42"}});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, AllOf(HasSubstr("does not start"), HasSubstr("-42")));
}

}  // namespace
}  // namespace tooltest
