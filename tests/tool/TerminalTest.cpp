#include <string>

#include "tool/TerminalProcess.h"

namespace tooltest {
namespace {

/// What a program writes that gives the screen of before back.
const std::string kRestored = "\x1b[?1049l";

TEST(TerminalTest, LivePictureShowsAndGivesTheTerminalBackOnEveryWayOut) {
    struct Case {
        const char* name;
        Environment environment;
        std::string keys;
        std::string shown;
        int exitCode;
    };
    const std::string size = "1024 x 1024";
    for (const Case& c : {
             Case{"q",           {{"COLORTERM", "truecolor"}},                   "q",    "\x1b[38;2;", 0  },
             Case{"256 colours", {{"COLORTERM", ""}},                            "q",    "\x1b[38;5;", 0  },
             Case{"Ctrl-C",      {},                                             "\x03", size,         130},
             Case{"closed link", {{"TAVO_SIM_LINK", "0"}},                       "",     "\x1b[2J",    3  },
             Case{"board fails", {{"TAVO_SIM_FAULT", "TavoDmaStartRead:1:-42"}}, "",     "-42",        3  },
    }) {
        SCOPED_TRACE(c.name);
        TerminalProcess tool({"view", "--timeout", "1"}, c.environment);
        EXPECT_TRUE(tool.waitFor(c.shown)) << tool.shown();
        if (!c.keys.empty()) tool.type(c.keys);
        EXPECT_EQ(tool.finish(), c.exitCode);
        EXPECT_THAT(tool.shown(), HasSubstr(kRestored));
        EXPECT_TRUE(tool.isRestored());
    }
}

TEST(TerminalTest, ProgressIsShownInATerminalAndNotInAPipe) {
    TerminalProcess tool({"acquire", "-n", "1000000"}, {});
    EXPECT_TRUE(tool.waitFor("/1000000  ")) << tool.shown();
    EXPECT_TRUE(tool.waitFor(" left")) << tool.shown();
    tool.type("\x03");
    EXPECT_EQ(tool.finish(), 130);
    EXPECT_THAT(tool.shown(), AllOf(HasSubstr("MB/s"), HasSubstr("1 stop:")));
    const ToolResult piped = runTool({"acquire", "-n", "30"});
    EXPECT_EQ(piped.errors, "");
    EXPECT_THAT(piped.output, Not(HasSubstr("\x1b")));
}

TEST(TerminalTest, ShellCompletesAndSurvivesCtrlC) {
    TerminalProcess tool({"shell"}, {});
    EXPECT_TRUE(tool.waitFor("quillon> "));
    tool.type("set FG_TRIGGERM\tASYNC_T\t\n");
    EXPECT_TRUE(tool.waitFor("FG_TRIGGERMODE = ASYNC_TRIGGER (2)")) << tool.shown();
    tool.type("watch width\n");
    EXPECT_TRUE(tool.waitFor("FG_WIDTH = 1024 [pixels]")) << tool.shown();
    tool.type("\x03");
    EXPECT_TRUE(tool.waitFor("quillon> ")) << tool.shown();
    tool.type("unfinished");
    EXPECT_TRUE(tool.waitFor("unfinished"));
    tool.type("\x03");
    EXPECT_TRUE(tool.waitFor("quillon> ")) << tool.shown();
    tool.type("\x1b[A\x1b[A\x01# \n");  // the line before the last, made a comment
    EXPECT_TRUE(tool.waitFor("quillon> ")) << tool.shown();
    tool.type("bogus\n");
    EXPECT_TRUE(tool.waitFor("there is no command 'bogus'")) << tool.shown();
    EXPECT_TRUE(tool.waitFor("quillon> ")) << "between two lines the terminal would swallow the end of input";
    tool.type("\x04");
    EXPECT_EQ(tool.finish(), 0);
    EXPECT_TRUE(tool.isRestored());
}

TEST(TerminalTest, LivePictureWantsATerminal) {
    const ToolResult result = runTool({"view"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("needs a terminal"));
    EXPECT_EQ(result.output, "");
}

}  // namespace
}  // namespace tooltest
