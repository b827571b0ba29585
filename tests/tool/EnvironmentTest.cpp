#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tool/ToolRun.h"

namespace tooltest {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A second installation tree that a test may damage.
class EnvironmentTest : public testing::Test {
protected:
    EnvironmentTest() {
        std::filesystem::copy(QUILLON_STAGE, mFolder / "tree",
                              std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
    }

    std::filesystem::path tree(const std::string& file) const { return mFolder / "tree" / file; }
    ToolResult run(const Arguments& arguments, const Environment& environment = {}) {
        return ToolProcess(tree("bin/quillon").string(), arguments, environment).finish();
    }
    void replace(const std::string& file) {
        std::filesystem::remove(tree(file));
        std::filesystem::copy_file("/etc/passwd", tree(file));
    }

    TemporaryFolder mFolder;
};

TEST_F(EnvironmentTest, MovedTreeWorksWithItsOwnFiles) {
    const ToolResult result = run({"info"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(tree("lib/libtavo_hw.so").string()));
    EXPECT_THAT(result.output, HasSubstr(tree("Hardware Applets/fabrixIV/libQuillon.so").string()));
}

TEST_F(EnvironmentTest, MissingRuntimeLibrariesAreNamedWithTheirPlace) {
    for (const std::string file : {"lib/libtavo_hw.so", "lib/libhaprt.so"}) {
        SCOPED_TRACE(file);
        std::filesystem::rename(tree(file), tree("kept"));
        const ToolResult missing = run({"get", "FG_WIDTH"});
        EXPECT_EQ(missing.exitCode, 3);
        EXPECT_THAT(missing.errors, AllOf(HasSubstr(tree(file).string()), HasSubstr("TAVODIR5")));
        std::filesystem::copy_file("/etc/passwd", tree(file));
        const ToolResult damaged = run({"get", "FG_WIDTH"});
        EXPECT_EQ(damaged.exitCode, 3);
        EXPECT_THAT(damaged.errors, AllOf(HasSubstr(tree(file).string()), HasSubstr("invalid ELF header")));
        std::filesystem::remove(tree(file));
        std::filesystem::rename(tree("kept"), tree(file));
    }
}

TEST_F(EnvironmentTest, WrongRuntimeLibraryIsToldByWhatItLacks) {
    // Each library in the other's place opens, and has none of the operations.
    std::filesystem::copy_file(tree("lib/libhaprt.so"), tree("lib/libtavo_hw.so"),
                               std::filesystem::copy_options::overwrite_existing);
    const ToolResult result = run({"get", "FG_WIDTH"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, AllOf(HasSubstr(tree("lib/libtavo_hw.so").string()), HasSubstr("lacks"),
                                     HasSubstr("TavoConfigureFpga")));
}

TEST_F(EnvironmentTest, InfoShowsTheAppletEvenWithoutABoard) {
    std::filesystem::remove(tree("lib/libtavo_hw.so"));
    const ToolResult result = run({"info"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.output, HasSubstr("QuillonCam_Greyscale_8bit"));
}

TEST_F(EnvironmentTest, AppletOutsideATreeUsesTheEnvironment) {
    std::filesystem::copy_file(tree("Hardware Applets/fabrixIV/libQuillon.so"), mFolder / "applet.so");
    const Arguments arguments{"--applet", (mFolder / "applet.so").string(), "get", "FG_WIDTH"};
    EXPECT_EQ(run(arguments,
                  {
                      {"TAVODIR5", tree("").string()}
    })
                  .exitCode,
              0);
    const ToolResult elsewhere = run(arguments, {
                                                    {"TAVODIR5", "/nowhere"}
    });
    EXPECT_EQ(elsewhere.exitCode, 3);
    EXPECT_THAT(elsewhere.errors, HasSubstr("/nowhere/lib/libtavo_hw.so"));
    const ToolResult nowhere = run(arguments);
    EXPECT_EQ(nowhere.exitCode, 3);
    EXPECT_THAT(nowhere.errors, HasSubstr("neither TAVODIR5_32 nor TAVODIR5 is set"));
}

TEST_F(EnvironmentTest, FilesThatAreNoAppletAreRefused) {
    const ToolResult absent = run({"info", "--applet", (mFolder / "absent.so").string()});
    EXPECT_EQ(absent.exitCode, 3);
    EXPECT_THAT(absent.errors, HasSubstr("there is no applet library"));
    const ToolResult text = run({"info", "--applet", "/etc/passwd"});
    EXPECT_EQ(text.exitCode, 3);
    EXPECT_THAT(text.errors, HasSubstr("invalid ELF header"));
    const ToolResult other = run({"info", "--applet", tree("lib/libhaprt.so").string()});
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_THAT(other.errors, AllOf(HasSubstr("is no applet library"), HasSubstr("Std_entry")));
}

TEST(CommandLineTest, WrongUsageEndsWithTwoAndAWord) {
    for (const Arguments& arguments : {
             Arguments{},
             {"fly"},
             {"get"},
             {"acquire", "-n", "-1"},
             {"acquire", "--buffers", "0"},
             {"acquire", "-n", "3", "--buffers", "1"},
             {"acquire", "--timeout", "soon"},
             {"list", "--colour"}
    }) {
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_NE(result.errors, "");
        EXPECT_THAT(result.output, IsEmpty());
    }
}

TEST(CommandLineTest, HelpHasAnExampleForEveryCommand) {
    EXPECT_THAT(runTool({"--version"}).output, StartsWith("quillon "));
    for (const std::string command :
         {"info", "list", "get", "registers", "acquire", "save", "set", "diff", "xml", "tree", "lut"}) {
        const ToolResult result = runTool({command, "--help"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, HasSubstr("Example:\n  quillon " + command));
    }
}

TEST(CommandLineTest, OutputThatCannotBeWrittenIsAFailure) {
    const ToolResult full = runShell("\"$1\" list > /dev/full");
    EXPECT_EQ(full.exitCode, 3);
    EXPECT_THAT(full.errors, HasSubstr("No space left on device"));
    const ToolResult closed = runShell("{ sleep 1; \"$1\" list; echo $? >&2; } | true");
    EXPECT_THAT(closed.errors, AllOf(HasSubstr("Broken pipe"), HasSubstr("\n3\n")));
}

}  // namespace
}  // namespace tooltest
