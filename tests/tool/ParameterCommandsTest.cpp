#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/ToolRun.h"

namespace tooltest {
namespace {

struct RefusalCase {
    Arguments settings;
    int exitCode;
    std::vector<std::string> texts;
};

TEST(ParameterCommandsTest, RefusalsNameValueLimitAndRemedy) {
    const std::vector<RefusalCase> cases{
        {{"FG_WIDTH=1000"},
         1,                                          {"FG_WIDTH = 1000 refused: not a multiple of the step 16 [pixels]; nearest allowed: 992 or 1008"}},
        {{"FG_WIDTH=33"},                         1, {"nearest allowed: 32 or 48"}                                                                    },
        {{"width=16"},                            1, {"FG_WIDTH = 16 refused: below the minimum 32 [pixels]", "32 to 65536 [pixels]"}                 },
        {{"width=65552"},                         1, {"above the maximum 65536 [pixels]"}                                                             },
        {{"FG_HEIGHT=65536"},                     1, {"FG_HEIGHT = 65536 refused: above the maximum 65535 [pixels]", "1 to 65535"}                    },
        {{"FG_XOFFSET=-16"},                      1, {"FG_XOFFSET = -16 refused: below the minimum 0 [pixels]"}                                       },
        {{"FG_TIMEOUT=1"},                        1, {"FG_TIMEOUT = 1 refused: below the minimum 2 [s]"}                                              },
        {{"FG_GEN_ROLL=256"},                     1, {"above the maximum 255; allowed: 0 to 255 (code -6000)"}                                        },
        {{"FG_CAMSTATUS=1"},                      1, {"FG_CAMSTATUS = 1 refused", "cannot be written"}                                                },
        {{"FG_GLOBAL_ACCESS=5"},                  1, {"FG_GLOBAL_ACCESS = 5 refused: no such entry", "RO (1)"}                                        },
        {{"FG_GLOBAL_ACCESS=ro", "FG_WIDTH=512"}, 1, {"FG_WIDTH = 512 refused", "FG_GLOBAL_ACCESS=NONE"}                                              },
        {{"FG_GLOBAL_ACCESS=most"},               2, {"FG_GLOBAL_ACCESS = most refused: no such entry", "RW_Change (7)"}                              },
        {{"FG_WIDTH=wide"},                       2, {"FG_WIDTH = wide refused: not a whole number"}                                                  },
        {{"FG_WIDTH="},                           2, {"FG_WIDTH =  refused: not a whole number"}                                                      },
        {{"FG_WIDTH=512.0"},                      2, {"not a whole number"}                                                                           },
        {{"FG_WIDTH=4294967808"},                 2, {"FG_WIDTH = 4294967808 refused: not a whole number"}                                            },
        {{"FG_WIDHT=512"},                        2, {"there is no parameter 'FG_WIDHT'; did you mean FG_WIDTH"}                                      },
        {{"FG_QQQQQQQQ=1"},                       2, {"there is no parameter 'FG_QQQQQQQQ'; 'quillon list'"}                                          },
        {{"FG_WIDTH"},                            2, {"'FG_WIDTH' is no setting; write NAME=VALUE"}                                                   },
        {{"FG_EXPOSURE=2MHz"},                    2, {"FG_EXPOSURE = 2MHz refused: 'MHz' is no unit", "[us]", "s, ms, us, ns"}                        },
        {{"FG_TIMEOUT=1500ms"},                   2, {"FG_TIMEOUT = 1500ms refused: it is 1.5 [s], and only whole numbers"}                           },
        {{"FG_WIDTH=9999999999px"},               2, {"FG_WIDTH = 9999999999px refused: not a whole number"}                                          },
        {{"FG_GEN_ROLL=3ms"},                     2, {"FG_GEN_ROLL = 3ms refused: it has no unit; write 3 alone"}                                     },
        {{"FG_EXPOSURE=5ms"},                     1, {"FG_EXPOSURE = 5000 refused", "'quillon describe FG_EXPOSURE' finds what locks it"}             },
    };
    for (const RefusalCase& row : cases) {
        Arguments arguments{"acquire", "--set"};
        arguments.insert(arguments.end(), row.settings.begin(), row.settings.end());
        SCOPED_TRACE(row.settings.back());
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, row.exitCode);
        for (const std::string& text : row.texts) EXPECT_THAT(result.errors, HasSubstr(text));
        EXPECT_THAT(result.output, IsEmpty());
    }
}

TEST(ParameterCommandsTest, EnumerationEntriesAreTakenByEveryName) {
    for (const char* entry : {"RW", "rw", "fg_rw", "Read Write", "3", "0x3"}) {
        SCOPED_TRACE(entry);
        const ToolResult result = runTool({"acquire", "--set", std::string("global_access=") + entry}, kFast);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
    }
}

TEST(ParameterCommandsTest, UnitsBecomeTheParametersOwn) {
    const std::vector<std::array<std::string, 2>> cases{
        {"FG_EXPOSURE=2ms",        "FG_EXPOSURE = 2000 [us]\n"   },
        {"exposure=0.0003 S",      "FG_EXPOSURE = 300 [us]\n"    },
        {"FG_EXPOSURE=250\u00B5s", "FG_EXPOSURE = 250 [us]\n"    },
        {"FG_FRAMESPERSEC=0.1kHz", "FG_FRAMESPERSEC = 100 [Hz]\n"},
        {"FG_TIMEOUT=2min",        "FG_TIMEOUT = 120 [s]\n"      },
        {"FG_GEN_FREQ=65000kHz",   "FG_GEN_FREQ = 65 [Mhz]\n"    },
        {"FG_WIDTH=512px",         "FG_WIDTH = 512 [pixels]\n"   },
        {"FG_WIDTH=0x200",         "FG_WIDTH = 512 [pixels]\n"   },
    };
    for (const auto& [setting, output] : cases) {
        SCOPED_TRACE(setting);
        const ToolResult result =
            runTool({"get", setting.substr(0, setting.find('=')), "--set", "triggermode=grabber_controlled", setting});
        EXPECT_EQ(result.output, output) << result.errors;
    }
}

TEST(ParameterCommandsTest, GetPrintsValuesInTheOrderAsked) {
    const ToolResult result = runTool({"get", "FG_TIMEOUT", "width", "Global_Access", "FG_REVNR"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "FG_TIMEOUT = 1000000 [s]\n"
              "FG_WIDTH = 1024 [pixels]\n"
              "FG_GLOBAL_ACCESS = NONE (0)\n"
              "FG_REVNR = 3.008\n");
}

TEST(ParameterCommandsTest, ListPatternsChooseByNameInAnyCase) {
    const ToolResult offsets = runTool({"list", "offset"});
    EXPECT_THAT(offsets.output, AllOf(HasSubstr("FG_XOFFSET"), HasSubstr("FG_YOFFSET"), Not(HasSubstr("FG_WIDTH"))));
    const ToolResult whole = runTool({"list", "?offset"});
    EXPECT_THAT(whole.output, AllOf(HasSubstr("FG_XOFFSET"), HasSubstr("FG_YOFFSET")));
    EXPECT_THAT(runTool({"list", "plx*"}).output, Not(HasSubstr("measured when named")));
    const ToolResult described = runTool({"list", "microseconds", "exsync"});
    EXPECT_THAT(described.output, AllOf(HasSubstr("FG_EXPOSURE"), Not(HasSubstr("FG_WIDTH"))));
    const ToolResult none = runTool({"list", "no such thing"});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_THAT(none.errors, HasSubstr("'no such thing'"));
}

TEST(ParameterCommandsTest, RangesShowAStepOnlyWhereItIsChecked) {
    EXPECT_THAT(runTool({"list", "fg_width"}).output, HasSubstr(" 32 to 65536, step 16\n"));
    // A double has one, 10, and takes any value.
    EXPECT_THAT(runTool({"list", "fg_exsyncdelay"}).output, HasSubstr(" 0 to 10485750\n"));
}

TEST(ParameterCommandsTest, DescribeFindsWhatAParameterDependsOn) {
    const auto description = [](const char* name, const char* mode) {
        return runTool({"describe", name, "--set", std::string("FG_TRIGGERMODE=") + mode}).output;
    };
    EXPECT_THAT(
        description("FG_EXPOSURE", "FREE_RUN"),
        HasSubstr("access now    r--: can be read, not written\n"
                  "locked        yes; FG_TRIGGERMODE=GRABBER_CONTROLLED or FG_GLOBAL_ACCESS=RW makes it writable\n"
                  "depends on    FG_TRIGGERMODE: access\n"
                  "              FG_GLOBAL_ACCESS: access\n"
                  "group"));
    EXPECT_THAT(description("FG_EXPOSURE", "GRABBER_CONTROLLED"), HasSubstr("depends on    FG_TRIGGERMODE: access\n"
                                                                            "              FG_FRAMESPERSEC: limits\n"
                                                                            "              FG_PRESCALER: limits\n"
                                                                            "              FG_GLOBAL_ACCESS: access\n"
                                                                            "group"));
    EXPECT_THAT(description("FG_GEN_FREQ", "FREE_RUN"), HasSubstr("depends on    FG_GEN_ACCURACY: limits, value\n"));
}

TEST(ParameterCommandsTest, ListedObjectsHaveTheKeysThatApply) {
    const auto objects = nlohmann::json::parse(runTool({"list", "--json"}).output);
    const auto named = [&](const char* name) {
        return *std::find_if(objects.begin(), objects.end(),
                             [&](const auto& object) { return object["name"] == name; });
    };
    EXPECT_EQ(named("FG_WIDTH"), nlohmann::json::parse(R"({"id": 100, "name": "FG_WIDTH", "displayName": "Width",
        "type": "integer", "value": 1024, "unit": "pixels", "min": 32, "max": 65536, "step": 16,
        "access": ["read", "write"], "group": "ROI", "description": "Image width of the acquisition window."})"));
    EXPECT_EQ(named("FG_GEN_START")["entries"], nlohmann::json::parse(R"([
        {"value": 1, "name": "FG_ON", "displayName": "On"}, {"value": 0, "name": "FG_OFF", "displayName": "Off"}])"));
    const auto action = named("FG_KNEE_LUT_SAVE_LOAD_FILE");
    for (const char* absent : {"value", "unit", "min", "max", "step"}) EXPECT_FALSE(action.contains(absent)) << absent;
    EXPECT_FALSE(named("FG_PLX_CLK").contains("value"));
    EXPECT_EQ(named("FG_REVNR")["value"], 3.008);
}

TEST(ParameterCommandsTest, WithoutACommandAllAreNamed) {
    const ToolResult wrong = runTool({"acqire", "-n", "2"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_THAT(wrong.errors,
                AllOf(HasSubstr("there is no command 'acqire'; there are info, list, "), HasSubstr("acquire, view")));
    EXPECT_THAT(runTool({"--board", "1"}).errors, HasSubstr("a command is missing; there are info, "));
    EXPECT_THAT(runTool({"get"}).errors, HasSubstr("NAME is required"));
}

TEST(ParameterCommandsTest, TraceShowsCallsWithArgumentsAndResults) {
    const ToolResult result = runTool({"get", "FG_WIDTH", "--trace", "--board", "2", "--set", "FG_WIDTH=512"});
    EXPECT_EQ(result.output, "FG_WIDTH = 512 [pixels]\n");
    EXPECT_THAT(result.errors, ContainsRegex("trace: Std_entry\\(0x[0-9a-f]+, 0x[0-9a-f]+ -> 0, 0\\) = 0x"));
    EXPECT_THAT(result.errors,
                ContainsRegex("trace: Fg_setParameterWithType\\(0x[0-9a-f]+, 100, 0x[0-9a-f]+ -> 512, 0, 1\\) = 0\n"));
    EXPECT_THAT(runTool({"get", "FG_PARAM_DESCR=FG_WIDTH", "--trace"}).errors,
                HasSubstr(R"( -> "Image width of the acquisition window.", 0, 6) = 0)"));
}

}  // namespace
}  // namespace tooltest
