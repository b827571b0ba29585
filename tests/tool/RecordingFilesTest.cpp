#include <tiffio.h>

#include <array>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

/// Reads every page with the library that others use.
std::vector<GrayPicture> readTiff(const std::filesystem::path& path) {
    std::vector<GrayPicture> pages;
    TIFF* file = TIFFOpen(path.c_str(), "r");
    if (file == nullptr) return pages;
    do {
        GrayPicture page;
        TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &page.width);
        TIFFGetField(file, TIFFTAG_IMAGELENGTH, &page.height);
        page.pixels.resize(size_t{page.width} * page.height);
        for (uint32_t y = 0; y < page.height; ++y) {
            if (TIFFReadScanline(file, page.pixels.data() + size_t{y} * page.width, y) < 0) page.pixels.clear();
        }
        pages.push_back(page);
    } while (TIFFReadDirectory(file) != 0);
    TIFFClose(file);
    return pages;
}

class RecordingFilesTest : public testing::Test {
protected:
    /// Acquires the camera's pictures whole.
    ToolResult acquire(const std::string& count, const std::string& output, const Arguments& more = {}) const {
        Arguments arguments{"acquire",  "-n",    count,       "--camera", mFolder.file("camera"),     "--set",
                            "WIDTH=96", "--set", "HEIGHT=65", "--output", (mFolder / output).string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runTool(arguments, kFast);
    }

    TemporaryFolder mFolder;
    const std::vector<GrayPicture> mInputs = readFolder(writeTextures(mFolder / "camera", 3, 96, 65));
};

TEST_F(RecordingFilesTest, TiffAndRawFilesHoldEveryPicture) {
    ASSERT_EQ(acquire("4", "all.tif").exitCode, 0);
    EXPECT_THAT(readTiff(mFolder / "all.tif"), ElementsAre(mInputs[0], mInputs[1], mInputs[2], mInputs[0]));
    ASSERT_EQ(acquire("2", "one%d.TIF").exitCode, 0);
    EXPECT_THAT(readTiff(mFolder / "one2.TIF"), ElementsAre(mInputs[1]));
    ASSERT_EQ(acquire("2", "all.raw").exitCode, 0);
    const std::string bytes = mFolder.content("all.raw");
    const auto& second = mInputs[1].pixels;
    ASSERT_EQ(bytes.size(), 2 * second.size());
    EXPECT_EQ(std::memcmp(bytes.data() + second.size(), second.data(), second.size()), 0);
}

TEST_F(RecordingFilesTest, FullDiskKeepsTheWholePagesThatFitted) {
    for (const std::string ending : {"tif", "raw"}) {
        SCOPED_TRACE(ending);
        const std::string file = (mFolder / ("all." + ending)).string();
        const ToolResult result = runOnFullDisk(
            40, "acquire -n 20 --camera " + mFolder.file("camera") + " --set WIDTH=96 HEIGHT=65 --output " + file,
            kFast);
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, AllOf(HasSubstr("all." + ending), HasSubstr("File too large")));
        EXPECT_THAT(result.output, HasSubstr("pictures    3 of 20"));
        if (ending == "tif") {
            EXPECT_EQ(readTiff(file), mInputs);
        } else {
            EXPECT_EQ(std::filesystem::file_size(file), 3U * 96 * 65);
        }
    }
    EXPECT_THAT(filesIn(mFolder.path()), ElementsAre("all.raw", "all.tif", "camera"));
}

TEST_F(RecordingFilesTest, PngIsExactWhateverItsCoding) {
    GrayPicture noise{512, 512, {}};
    GrayPicture smooth{512, 512, {}};
    std::mt19937 random(7);
    for (uint32_t i = 0; i < 512 * 512; ++i) {
        noise.pixels.push_back(static_cast<uint8_t>(random()));
        smooth.pixels.push_back(static_cast<uint8_t>((i % 512 + i / 512) / 4 + random() % 3));
    }
    std::filesystem::create_directory(mFolder / "two");
    writePgm(mFolder / "two" / "a.pgm", noise);
    writePgm(mFolder / "two" / "b.pgm", smooth);
    std::array<uintmax_t, 2> sizes{};
    for (const bool isSmall : {false, true}) {
        Arguments arguments{"acquire",   "-n",    "2",          "--camera", mFolder.file("two"),    "--set",
                            "WIDTH=512", "--set", "HEIGHT=512", "--output", mFolder.file("n%d.png")};
        if (isSmall) arguments.emplace_back("--compress");
        ASSERT_EQ(runTool(arguments, kFast).exitCode, 0);
        EXPECT_EQ(readPicture(mFolder / "n1.png"), noise);
        EXPECT_EQ(readPicture(mFolder / "n2.png"), smooth);
        sizes[isSmall ? 1 : 0] = std::filesystem::file_size(mFolder / "n2.png");
    }
    EXPECT_LT(sizes[0], 512U * 512 / 2);
    EXPECT_LT(sizes[1], sizes[0]);
}

TEST_F(RecordingFilesTest, PicturesThatTheDiskWasTooSlowForAreCountedAsSuch) {
    // Pictures come every millisecond, and their smallest PNG takes longer.
    const Arguments arguments{"acquire",    "-n",        "400",
                              "--set",      "WIDTH=512", "--set",
                              "HEIGHT=512", "--output",  mFolder.file("out/p%d.png"),
                              "--buffers",  "2",         "--compress"};
    const Environment quick{
        {"TAVO_SIM_RATE", "1000"}
    };
    Arguments withJson = arguments;
    withJson.emplace_back("--json");
    const ToolResult result = runTool(withJson, quick);
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const nlohmann::json report = nlohmann::json::parse(result.output);
    EXPECT_GT(report["slowDisk"], 0);
    EXPECT_EQ(report["pictures"].get<int>() + report["slowDisk"].get<int>() + report["overwritten"].get<int>(), 400);
    EXPECT_EQ(report["lost"].get<int>() - report["dropped"].get<int>(), 400 - report["pictures"].get<int>());
    EXPECT_EQ(report["stops"], 0);
    EXPECT_EQ(report["timeOuts"], 0);
    EXPECT_EQ(filesIn(mFolder / "out").size(), report["pictures"].get<size_t>());
    EXPECT_THAT(runTool(arguments, quick).output, HasSubstr("the disk was slow"));
}

TEST_F(RecordingFilesTest, HistogramSheetShowsThePictureAndItsCounts) {
    ASSERT_EQ(acquire("3", "p%d.pgm", {"--histogram", mFolder.file("h.png")}).exitCode, 0);
    const GrayPicture sheet = readPicture(mFolder / "h.png");
    EXPECT_EQ(sheet.crop(20, 20, 96, 65), mInputs[2]);
    for (const char* bad : {"/no/such/folder/h.png", "h.jpg"}) {
        EXPECT_THAT(acquire("1", "p%d.pgm", {"--histogram", bad}).errors, HasSubstr(bad));
    }
}

TEST(SilenceTest, AnAcquisitionWithoutPicturesSaysWhatItWaitedFor) {
    struct Case {
        Arguments options;
        std::vector<std::string> named;
    };
    for (const Case& c : {
             Case{{"--trigger-mode", "async_trigger", "--set", "FG_TRIGGERINPOLARITY=1", "--set", "CCSEL0=CC_GND"},
                  {"FG_TRIGGERMODE = ASYNC_TRIGGER (2)", "FG_TRIGGERINSRC = Input_0 (0)",
                   "FG_TRIGGERINPOLARITY = Low (1)", "set FG_EXSYNCON=FG_ON", "no CC line carries ExSync"}                            },
             Case{{"--trigger-mode", "4", "--set", "EXSYNCON=1", "--software-triggers", "2"},
                  {"ASYNC_SOFTWARE_TRIGGER (4)", "software triggers", "FG_CCSEL0 = CC_EXSYNC (0)"}                                    },
             Case{{},                                                                                               {"runs by itself"}},
    }) {
        Arguments arguments{"acquire", "--timeout", "1"};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        const ToolResult result = runTool(arguments, {
                                                         {"TAVO_SIM_LINK", "0"}
        });
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, HasSubstr("camera link is closed"));
        for (const std::string& text : c.named) EXPECT_THAT(result.errors, HasSubstr(text));
        EXPECT_THAT(result.output, HasSubstr("1 time-out"));
    }
}

TEST(SilenceTest, SoftwareTriggersAreCountedInTheJsonReport) {
    const ToolResult result =
        runTool({"acquire", "--trigger-mode", "4", "--set", "EXSYNCON=1", "--software-triggers", "3", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const nlohmann::json report = nlohmann::json::parse(result.output);
    EXPECT_EQ(report["triggersSent"], 3);
    EXPECT_TRUE(report.contains("triggersRepeated"));
    EXPECT_FALSE(nlohmann::json::parse(runTool({"acquire", "--json"}).output).contains("triggersSent"));
}

}  // namespace
}  // namespace tooltest
