#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tool/GrayPicture.h"
#include "tool/ToolRun.h"

namespace tooltest {
namespace {

class ShellTest : public testing::Test {
protected:
    std::string script(const std::string& text) const {
        const std::string path = mFolder.file("script.txt");
        std::ofstream(path) << text;
        return path;
    }

    TemporaryFolder mFolder;
};

TEST_F(ShellTest, OneGrabberStaysOpenFromLineToLine) {
    const std::string folder = mFolder.path().string();
    const ToolResult result = runTool({"shell", script("# a comment\n"
                                                       "set width=64 \"HEIGHT=48\"\n"
                                                       "save " +
                                                       folder +
                                                       "/small.mcf\n"
                                                       "set width=128\n"
                                                       "start --output " +
                                                       folder +
                                                       "/p%d.pgm\n"
                                                       "set FG_CCSEL1=CC_GND\n"
                                                       "set width=64\n")});
    // The width is locked while pictures are acquired; the acquisition is ended with its report all the same.
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("script.txt:7: FG_WIDTH = 64 refused"), HasSubstr("while an acquisition runs")));
    EXPECT_THAT(result.output, AllOf(HasSubstr("FG_CCSEL1 = CC_GND (4)"), HasSubstr("128 x 48"), HasSubstr("1 stop:")));
    const ToolResult loaded = runShell("printf 'load " + folder + "/small.mcf\\nacquire -n 2 --output " + folder +
                                       "/q%%d.pgm\\nget WIDTH\\nquit\\nbogus\\n' | \"$1\" shell");
    EXPECT_EQ(loaded.exitCode, 0) << loaded.errors;
    EXPECT_THAT(loaded.output, AllOf(HasSubstr("2 of 2"), HasSubstr("FG_WIDTH = 64")));
    EXPECT_EQ(readPicture(mFolder / "q2.pgm").width, 64U);
}

TEST_F(ShellTest, FailuresNameTheLineAndDecideTheExitCode) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {"bogus",             "there is no command 'bogus'"},
        {"get wdith",         "did you mean FG_WIDTH?"     },
        {"set width",         "write NAME=VALUE"           },
        {"set width=31",      "below the minimum 32"       },
        {"set",               "write: set NAME=VALUE..."   },
        {"get \"width",       "is not closed"              },
        {"load absent.mcf",   "absent.mcf"                 },
        {"start -n x",        "x"                          },
        {"start --buffers 1", "--buffers 2"                },
        {"stop",              "no acquisition runs"        },
        {"trigger 1",         "takes no software triggers" },
        {"watch width 1 0",   "no time in seconds"         },
        {"sleep nan",         "no time in seconds"         },
    };
    std::string all;
    for (const auto& [line, message] : bad) all += line + "\n";
    const ToolResult result = runTool({"shell", "--keep-going", script(all + "get height\n")});
    EXPECT_EQ(result.exitCode, 1);
    for (size_t i = 0; i < bad.size(); ++i) {
        EXPECT_THAT(result.errors, ContainsRegex("script.txt:" + std::to_string(i + 1) + ": [^\n]*" +
                                                 (bad[i].second.ends_with('?') ? "did you mean" : "")));
        EXPECT_THAT(result.errors, HasSubstr(bad[i].second)) << bad[i].first;
    }
    EXPECT_THAT(result.output, HasSubstr("FG_HEIGHT = 1024"));
    const ToolResult first = runTool({"shell", script("bogus\nget height\n")});
    EXPECT_EQ(first.exitCode, 1);
    EXPECT_THAT(first.output, Not(HasSubstr("FG_HEIGHT")));
    EXPECT_EQ(runTool({"shell", mFolder.file("absent")}).exitCode, 3);
}

TEST_F(ShellTest, SoftwareTriggersAreSentWhileTheAcquisitionRuns) {
    const ToolResult result = runTool({"shell", script("set FG_TRIGGERMODE=ASYNC_SOFTWARE_TRIGGER FG_EXSYNCON=FG_ON\n"
                                                       "start -n 5 --timeout 20\n"
                                                       "trigger 5@50\n"
                                                       "wait\n")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(HasSubstr("sent 5 of 5 software triggers"), HasSubstr("pictures    5 of 5")));
}

TEST_F(ShellTest, SignalsEndAScript) {
    for (const int signal : {SIGINT, SIGTERM}) {
        ToolProcess tool(toolPath(),
                         {"shell", script("start --output " + mFolder.file("out/s%d.raw") + "\nsleep 60\n")});
        for (int i = 0; i < 2000 && filesIn(mFolder / "out").size() < 4; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        tool.signal(signal);
        const ToolResult result = tool.finish();
        EXPECT_EQ(result.exitCode, 128 + signal);
        EXPECT_THAT(result.output, AllOf(HasSubstr("1 stop:"), HasSubstr("lost        0")));
        std::filesystem::remove_all(mFolder / "out");
    }
}

}  // namespace
}  // namespace tooltest
