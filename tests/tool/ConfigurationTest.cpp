#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tool/ToolRun.h"

namespace tooltest {
namespace {

class ConfigurationTest : public testing::Test {
protected:
    /// Saves a file and expects that to succeed.
    std::string save(const std::string& name, const Arguments& settings = {}) const {
        Arguments arguments{"save", mFolder.file(name)};
        if (!settings.empty()) arguments.emplace_back("--set");
        arguments.insert(arguments.end(), settings.begin(), settings.end());
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return mFolder.content(name);
    }

    /// A saved file in which one text is replaced.
    void saveChanged(const std::string& name, const std::string& from, const std::string& to) const {
        std::string text = save(name);
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos);
        mFolder.write(name, text.replace(at, from.size(), to));
    }

    TemporaryFolder mFolder;
};

TEST_F(ConfigurationTest, WhatOneCommandSavesTheNextOneFinds) {
    const std::string text = save("camera.mcf", {"FG_WIDTH=512", "knee_lut_gamma=2.5", "FG_CCSEL1=CC_EXSYNC"});
    EXPECT_THAT(text, AllOf(StartsWith("[Kamerasektion]\n\nConfigFileVersion=2.0;\n"), HasSubstr("\nFG_WIDTH=512;\n"),
                            HasSubstr("\nFG_KNEE_LUT_GAMMA=2.5;\n"), HasSubstr("\n[Port B]\n")));
    const ToolResult got =
        runTool({"get", "width", "knee_lut_gamma", "height", "--config", mFolder.file("camera.mcf")});
    EXPECT_EQ(got.output, "FG_WIDTH = 512 [pixels]\nFG_KNEE_LUT_GAMMA = 2.5\nFG_HEIGHT = 1024 [pixels]\n");
    // A setting comes after the file, and reaches the board as the file's values do.
    const ToolResult written =
        runTool({"registers", "areawidth", "--config", mFolder.file("camera.mcf"), "--set", "FG_WIDTH=640"});
    const ToolResult loaded = runTool({"registers", "areawidth", "--config", mFolder.file("camera.mcf")});
    EXPECT_THAT(loaded.output, ContainsRegex("AAAreaWidth +[0-9]+ +read/write +31 "));
    EXPECT_THAT(written.output, ContainsRegex("AAAreaWidth +[0-9]+ +read/write +39 "));
    EXPECT_THAT(runTool({"list", "fg_width", "--config", mFolder.file("camera.mcf")}).output,
                ContainsRegex("FG_WIDTH +512 +\\[pixels\\]"));
    // Saved anew, the state is the same.
    EXPECT_EQ(runTool({"save", mFolder.file("again.mcf"), "--config", mFolder.file("camera.mcf")}).exitCode, 0);
    EXPECT_EQ(mFolder.content("again.mcf"), text);
}

TEST_F(ConfigurationTest, SetEditsTheFileAndKeepsTheRest) {
    save("camera.mcf", {"FG_WIDTH=512"});
    std::filesystem::permissions(mFolder / "camera.mcf",
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    std::filesystem::create_symlink("camera.mcf", mFolder / "link.mcf");
    const ToolResult result = runTool({"set", "--config", mFolder.file("link.mcf"), "FG_HEIGHT=300", "invert=on"});
    EXPECT_EQ(result.exitCode, 2);
    const ToolResult edited =
        runTool({"set", "--config", mFolder.file("link.mcf"), "FG_HEIGHT=300", "knee_lut_invert=on"});
    EXPECT_EQ(edited.exitCode, 0) << edited.errors;
    EXPECT_EQ(edited.output,
              "FG_HEIGHT = 300 [pixels]\nFG_KNEE_LUT_INVERT = FG_ON (1)\nsaved " + mFolder.file("link.mcf") + "\n");
    EXPECT_TRUE(std::filesystem::is_symlink(mFolder / "link.mcf"));
    EXPECT_EQ(std::filesystem::status(mFolder / "camera.mcf").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_THAT(mFolder.content("camera.mcf"),
                AllOf(HasSubstr("\nFG_WIDTH=512;\nFG_HEIGHT=300;\n"), HasSubstr("\nFG_KNEE_LUT_INVERT=1;\n")));
}

TEST_F(ConfigurationTest, DiffShowsBothValuesAndAnswersAsDiffDoes) {
    save("default.mcf");
    save("a.mcf", {"FG_WIDTH=512", "FG_TRIGGERMODE=1"});
    save("b.mcf", {"FG_WIDTH=640"});
    const ToolResult equal = runTool({"diff", mFolder.file("default.mcf")});
    EXPECT_EQ(equal.exitCode, 0) << equal.errors;
    EXPECT_THAT(equal.output, IsEmpty());
    EXPECT_EQ(runTool({"diff", mFolder.file("a.mcf"), mFolder.file("a.mcf")}).exitCode, 0);
    const ToolResult defaults = runTool({"diff", mFolder.file("b.mcf")});
    EXPECT_EQ(defaults.exitCode, 1);
    EXPECT_THAT(defaults.output, AllOf(ContainsRegex("PARAMETER +default +[^ ]*b.mcf\n"),
                                       ContainsRegex("\nPort A\n  FG_WIDTH +1024 \\[pixels\\] +640 \\[pixels\\]\n")));
    const ToolResult both = runTool({"diff", mFolder.file("a.mcf"), mFolder.file("b.mcf")});
    EXPECT_EQ(both.exitCode, 1);
    EXPECT_THAT(both.output, AllOf(ContainsRegex("\n  FG_WIDTH +512 \\[pixels\\] +640 \\[pixels\\]\n"),
                                   ContainsRegex("\n  FG_TRIGGERMODE +[^\n]+\\(1\\) +[^\n]+\\(0\\)\n"),
                                   Not(HasSubstr("FG_HEIGHT"))));
    EXPECT_EQ(runTool({"diff", mFolder.file("a.mcf"), mFolder.file("none.mcf")}).exitCode, 3);
    EXPECT_EQ(runTool({"diff"}).exitCode, 2);
}

TEST_F(ConfigurationTest, RefusedFilesAreNamedWithReasonAndRemedy) {
    const std::string text = save("good.mcf");
    std::filesystem::create_directory(mFolder / "folder.mcf");
    mFolder.write("empty.mcf", "");
    mFolder.write("binary.mcf", std::string("Hersteller='\x01\xff\0\n", 16));
    mFolder.write("long.mcf", std::string(1'000'000, 'x'));
    saveChanged("maker.mcf", "Generic-CameraLink", "Other");
    saveChanged("type.mcf", "Typ='Quillon8'", "Typ='Quillon'");
    saveChanged("port.mcf", "AktivePort=0;\n", "");
    const std::vector<std::tuple<std::string, int, std::string>> cases{
        {"good.txt",   2, "does not contain \".mcf\"; name it"                      },
        {"absent.mcf", 3, "there is no such file"                                   },
        {"folder.mcf", 3, "it is a folder"                                          },
        {"empty.mcf",  3, "no line Hersteller='...'"                                },
        {"binary.mcf", 3, "for cameras of '??"                                      },
        {"long.mcf",   3, "no line Hersteller='...'"                                },
        {"maker.mcf",  3, "for cameras of 'Other', and this applet serves 'Generic-"},
        {"type.mcf",   3, "type 'Quillon', and this applet serves 'Quillon8'"       },
        {"port.mcf",   3, "no line 'AktivePort=0;'"                                 },
    };
    for (const auto& [name, exitCode, reason] : cases) {
        SCOPED_TRACE(name);
        for (const Arguments& command : {
                 Arguments{"get", "FG_WIDTH", "--config"},
                 {"diff"}
        }) {
            Arguments arguments = command;
            arguments.push_back(mFolder.file(name));
            const ToolResult result = runTool(arguments);
            EXPECT_EQ(result.exitCode, exitCode);
            EXPECT_THAT(result.errors, AllOf(HasSubstr(mFolder.file(name)), HasSubstr(reason)));
            EXPECT_THAT(result.output, IsEmpty());
        }
    }
    EXPECT_THAT(runTool({"get", "FG_WIDTH", "--config", mFolder.file("type.mcf")}).errors,
                AllOf(HasSubstr("'quillon save NEW.mcf'"), EndsWith("(code -5000)\n")));
    EXPECT_EQ(mFolder.content("good.mcf"), text);
}

TEST_F(ConfigurationTest, FullDiskLeavesTheFormerFile) {
    const std::string config = save("camera.mcf");
    ASSERT_EQ(runTool({"lut", "save", mFolder.file("curve.lut")}).exitCode, 0);
    ASSERT_EQ(runTool({"xml", "--output", mFolder.file("parameters.xml")}).exitCode, 0);
    const std::string curve = mFolder.content("curve.lut");
    const std::string document = mFolder.content("parameters.xml");
    const std::vector<std::string> files = filesIn(mFolder.path());
    for (const std::string& command :
         {"save " + mFolder.file("camera.mcf") + " --set FG_WIDTH=512",
          "set --config " + mFolder.file("camera.mcf") + " FG_WIDTH=512", "lut save " + mFolder.file("curve.lut"),
          "xml --output " + mFolder.file("parameters.xml")}) {
        SCOPED_TRACE(command);
        const ToolResult result = runOnFullDisk(8, command);
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_THAT(result.errors, AllOf(HasSubstr("quillon: cannot "), HasSubstr(mFolder.path().string())));
    }
    EXPECT_EQ(mFolder.content("camera.mcf"), config);
    EXPECT_EQ(mFolder.content("curve.lut"), curve);
    EXPECT_EQ(mFolder.content("parameters.xml"), document);
    EXPECT_EQ(filesIn(mFolder.path()), files);
}

TEST_F(ConfigurationTest, UnusableTargetsAreRefused) {
    std::filesystem::create_directory(mFolder / "folder.mcf");
    for (const auto& [name, exitCode, reason] : std::vector<std::tuple<std::string, int, std::string>>{
             {"camera.cfg",      2, "does not contain \".mcf\""},
             {"folder.mcf",      3, "Is a directory"           },
             {"none/camera.mcf", 3, "No such file or directory"}
    }) {
        SCOPED_TRACE(name);
        const ToolResult result = runTool({"save", mFolder.file(name)});
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_THAT(result.errors, AllOf(HasSubstr(mFolder.file(name)), HasSubstr(reason)));
    }
    EXPECT_EQ(runTool({"save", "--set", "FG_WIDTH=512"}).exitCode, 2);
    EXPECT_THAT(filesIn(mFolder.path()), ElementsAre("folder.mcf"));
}

TEST_F(ConfigurationTest, SetRefusesWithoutTouchingTheFile) {
    const std::string text = save("camera.mcf");
    const ToolResult refused =
        runTool({"set", "--config", mFolder.file("camera.mcf"), "FG_HEIGHT=300", "FG_WIDTH=1000"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.errors, HasSubstr("FG_WIDTH = 1000 refused: not a multiple of the step 16"));
    EXPECT_EQ(mFolder.content("camera.mcf"), text);
    const ToolResult bare = runTool({"set", "FG_WIDTH=512"});
    EXPECT_EQ(bare.exitCode, 2);
    EXPECT_THAT(bare.errors, AllOf(HasSubstr("nothing outlives"), HasSubstr("--config FILE"),
                                   HasSubstr("--set NAME=VALUE"), HasSubstr("quillon shell")));
    EXPECT_EQ(runTool({"set", "--config", mFolder.file("camera.mcf")}).exitCode, 2);
    const ToolResult absent = runTool({"set", "--config", mFolder.file("new.mcf"), "FG_WIDTH=512"});
    EXPECT_EQ(absent.exitCode, 3);
    EXPECT_THAT(absent.errors, AllOf(HasSubstr("there is no configuration file"), HasSubstr("--create")));
    EXPECT_THAT(filesIn(mFolder.path()), ElementsAre("camera.mcf"));
    EXPECT_EQ(runTool({"set", "--config", mFolder.file("new.mcf"), "--create", "FG_WIDTH=512"}).exitCode, 0);
    EXPECT_THAT(mFolder.content("new.mcf"), HasSubstr("\nFG_WIDTH=512;\n"));
}

}  // namespace
}  // namespace tooltest
