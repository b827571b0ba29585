#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tool/ToolRun.h"

namespace tooltest {
namespace {

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

    TemporaryFolder mFolder;
};

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

TEST_F(EnvironmentTest, FilesThatAreNoAppletAreRefused) {
    const ToolResult absent = run({"info", "--applet", mFolder.file("absent.so")});
    EXPECT_EQ(absent.exitCode, 3);
    EXPECT_THAT(absent.errors, HasSubstr("there is no applet library"));
    const ToolResult text = run({"info", "--applet", "/etc/passwd"});
    EXPECT_EQ(text.exitCode, 3);
    EXPECT_THAT(text.errors, HasSubstr("invalid ELF header"));
    const ToolResult other = run({"info", "--applet", tree("lib/libhaprt.so").string()});
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_THAT(other.errors, AllOf(HasSubstr("is no applet library"), HasSubstr("Std_entry")));
}

struct DoctorCase {
    const char* damage;  ///< shell command in the tree
    Environment environment;
    std::vector<std::string> texts;
};

TEST_F(EnvironmentTest, DoctorNamesWhatFailsAndWhatToDo) {
    const ToolResult healthy = run({"doctor"});
    EXPECT_EQ(healthy.exitCode, 0) << healthy.output << healthy.errors;
    EXPECT_THAT(healthy.output, AllOf(HasSubstr("software board"), Not(HasSubstr("FAILED"))));
    const std::vector<DoctorCase> cases{
        {"true",                                             {{"TAVO_SIM_LINK", "0"}},                  {"FAILED  camera link", "cables"}                                   },
        {"rm lib/libtavo_hw.so",                             {},                                        {"FAILED  libtavo_hw.so", "install libtavo_hw.so in the folder lib"}},
        {"cp lib/libhaprt.so lib/libtavo_hw.so",             {},                                        {"TavoConfigureFpga", "belongs to this applet"}                     },
        {"cp '" QUILLON_LISTENING_HAPRT "' lib/libhaprt.so",
         {{"LISTENING_HAPRT", QUILLON_STAGE "/lib/libhaprt.so"}, {"LISTENING_UNKNOWN", "AAAreaWidth"}},
         {"FAILED  registers", "AAAreaWidth (RSWindow)"}                                                                                                                    },
        {"rm 'Hardware Applets/fabrixIV/libQuillon.so'",     {},                                        {"FAILED  applet library", "--applet PATH"}                         },
    };
    for (const DoctorCase& row : cases) {
        SCOPED_TRACE(row.damage);
        std::filesystem::remove_all(mFolder / "tree");
        ASSERT_EQ(runShell("cp -a '" QUILLON_STAGE "' '" + tree("").string() + "' && cd '" + tree("").string() +
                           "' && " + row.damage)
                      .exitCode,
                  0);
        const ToolResult result = run({"doctor"}, row.environment);
        EXPECT_EQ(result.exitCode, 3);
        for (const std::string& text : row.texts) EXPECT_THAT(result.output, HasSubstr(text));
    }
}

/// \return every quoted text that begins a row
std::set<std::string> namesIn(const std::filesystem::path& file, const std::string& without) {
    std::ifstream stream(file);
    std::set<std::string> names;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("{\"") && line.find(without) == std::string::npos)
            names.insert(line.substr(2, line.find('"', 2) - 2));
    }
    return names;
}

TEST_F(EnvironmentTest, UsedRegistersAreThoseThatTheAppletLooksUp) {
    std::filesystem::copy_file(QUILLON_LISTENING_HAPRT, tree("lib/libhaprt.so"),
                               std::filesystem::copy_options::overwrite_existing);
    const std::filesystem::path log = mFolder / "names";
    const Environment listening{
        {"LISTENING_HAPRT", QUILLON_STAGE "/lib/libhaprt.so"},
        {"LISTENING_LOG",   log.string()                    }
    };
    // The measurement looks its registers up when it is made.
    ASSERT_EQ(run({"get", "FG_MEASURED_PCIE_CLK"}, listening).exitCode, 0);
    const std::set<std::string> lookedUp = namesIn(log, "?");
    EXPECT_GT(lookedUp.size(), 50U);
    EXPECT_EQ(namesIn(QUILLON_USED_REGISTERS, "SecondCamera"), lookedUp);
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
             {"list", "--colour"},
             {"xml", "--json"},
             {"help", "fly"},
             {"get", "width", "--board", "-1"},
             {"get", "width", "--port", "2"}
    }) {
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_NE(result.errors, "");
        EXPECT_THAT(result.output, IsEmpty());
    }
}

TEST(CommandLineTest, ManualPageHasEveryOptionOfTheHelp) {
    const std::string page = runShell("sed 's/\\\\//g' \"${1%/bin/*}/share/man/man1/quillon.1\"").output;
    for (const std::string command : {"list", "acquire", "set", "lut"}) {
        const std::string help = runTool({"help", command}).output;
        int options = 0;
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);) {
            const size_t begin = line.find("--");
            if (!line.starts_with("  -") || begin == std::string::npos) continue;
            const size_t end = line.find_first_not_of("-abcdefghijklmnopqrstuvwxyz", begin);
            EXPECT_THAT(page, HasSubstr(line.substr(begin, end - begin))) << command;
            ++options;
        }
        EXPECT_GT(options, 1) << help;
        EXPECT_THAT(page, HasSubstr("\n.SS " + command + "\n"));
    }
    EXPECT_THAT(page, HasSubstr("Exit codes: 0 done"));
}

TEST(CommandLineTest, ShellsCompleteCommandsOptionsAndLiveNames) {
    const std::vector<std::pair<Arguments, std::string>> cases{
        {{"des"},                                        "describe\n"                               },
        {{"lut", "s"},                                   "show\nsave\n"                             },
        {{"list", "--js"},                               "--json\n"                                 },
        {{"xml", "--js"},                                ""                                         },
        {{"get", "wid"},                                 "FG_WIDTH\n"                               },
        {{"get", "FG_WIDTH", "FG_FRAM"},                 "FG_FRAMESPERSEC\n"                        },
        {{"get", "--set", "FG_WIDTH=64", "FG_TRIGGERM"}, "FG_TRIGGERMODE=\n"                        },
        {{"set", "--config", "a.mcf", "FG_GEN_START="},  "FG_GEN_START=FG_ON\nFG_GEN_START=FG_OFF\n"},
        {{"acquire", "--output", "FG_WID"},              ""                                         },
        {{"--applet", "/nowhere", "get", "wid"},         ""                                         },
        {{"help", "dev"},                                "devices\n"                                },
        {{},                                             ""                                         },
    };
    for (const auto& [words, output] : cases) {
        Arguments arguments{"__complete"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        SCOPED_TRACE(words.empty() ? "no word" : words.back());
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.exitCode, 0);
    }
    const ToolResult shell = runShell(
        R"(PATH=${1%/quillon}:$PATH bash -c 'source "$0"; COMP_LINE="quillon get --set FG_TRIGGERMODE=gr";
            COMP_POINT=${#COMP_LINE}; _quillon; echo "${COMPREPLY[@]}"' "${1%/bin/*}/share/bash-completion/completions/quillon")");
    EXPECT_EQ(shell.output, "GRABBER_CONTROLLED\n") << shell.errors;
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
