#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tool/ToolRun.h"

namespace tooltest {
namespace {

/// What the tool and the design tell of one register.
struct Row {
    std::string name;
    std::string width;
    std::string direction;

    bool operator==(const Row&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.name << ' ' << row.width << ' ' << row.direction;
}

std::vector<Row> rowsOfDesign() {
    std::ifstream file(QUILLON_SOURCE "/StandardApplets/Quillon/data/quillon.design");
    std::vector<Row> rows;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string keyword;
        Row row;
        if (!(words >> keyword >> row.name >> row.width >> row.direction) || keyword != "register") continue;
        if (row.direction == "write") row.direction = "read/write";
        rows.push_back(row);
    }
    return rows;
}

/// The lines below the heading.
std::vector<std::string> linesOf(const ToolResult& result) {
    std::istringstream output(result.output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) lines.push_back(line);
    if (!lines.empty()) lines.erase(lines.begin());
    return lines;
}

TEST(RegistersTest, EveryRegisterOfTheDesignIsListedInItsOrder) {
    const std::vector<Row> expected = rowsOfDesign();
    ASSERT_THAT(expected, SizeIs(testing::Ge(40)));
    ASSERT_THAT(expected, testing::IsSupersetOf({
                              Row{"AAAreaWidth", "12", "read/write"},
                              Row{"AAFreqCount", "32", "read"      }
    }));
    // The user's own choice for his programs does not reach the command.
    const ToolResult result = runTool(
        {
            "registers"
    },
        {{"TAVO_ENABLE_DRA", "no"}});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    std::vector<Row> listed;
    for (const std::string& line : linesOf(result)) {
        std::istringstream words(line);
        Row row;
        words >> row.name >> row.width >> row.direction;
        listed.push_back(row);
    }
    EXPECT_EQ(listed, expected);
}

TEST(RegistersTest, ValuesAreWhatSettingsWriteToTheBoard) {
    const ToolResult window = runTool({"registers", "areawidth", "--set", "FG_WIDTH=512"});
    EXPECT_THAT(linesOf(window), SizeIs(1));
    EXPECT_THAT(window.output, ContainsRegex("\nAAAreaWidth +12 +read/write +31 +0x01f\n"));
    const ToolResult taps = runTool({"registers", "TapSort*", "--set", "FG_SENSORREADOUT=SMODE_TAB8_0"});
    EXPECT_THAT(linesOf(taps), SizeIs(2));
    EXPECT_THAT(taps.output, AllOf(ContainsRegex("\nTapSortingSchemaA +32 +read/write +3130536464 +0xba983210\n"),
                                   ContainsRegex("\nTapSortingSchemaB +32 +read/write +4023215941 +0xefcd6745\n")));
}

TEST(RegistersTest, RegistersAreWrittenAsUnsignedNumbers) {
    const ToolResult written = runTool({"registers", "tap", "--set", "DRA_TapSortingSchemaA=0xFEDCBA91",
                                        "dra_tapsortingschemab=4294967295", "DRA_TapNumber=31"});
    ASSERT_EQ(written.exitCode, 0) << written.errors;
    EXPECT_THAT(written.output, AllOf(ContainsRegex("TapSortingSchemaA .* 4275878545 +0xfedcba91\n"),
                                      ContainsRegex("TapSortingSchemaB .* 4294967295 +0xffffffff\n"),
                                      ContainsRegex("TapNumber .* 15 +0xf\n")));
    for (const std::string value : {"-1", "4294967296", "0x100000000", "99999999999999999999"}) {
        SCOPED_TRACE(value);
        const ToolResult refused = runTool({"registers", "--set", "DRA_TapSortingSchemaA=" + value});
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_THAT(refused.errors, HasSubstr("not a whole number from 0 to 4294967295"));
    }
    const ToolResult readOnly = runTool({"registers", "--set", "DRA_AABufferStatus=1"});
    EXPECT_EQ(readOnly.exitCode, 1);
    EXPECT_THAT(readOnly.errors, HasSubstr("DRA_AABufferStatus = 1 refused"));
    EXPECT_THAT(readOnly.output, IsEmpty());
}

TEST(RegistersTest, OtherCommandsSeeThemOnlyWhereTheUserAsks) {
    const ToolResult asked = runTool(
        {
            "list", "sortingschema"
    },
        {{"TAVO_ENABLE_DRA", "Yes"}});
    EXPECT_THAT(asked.output, ContainsRegex("\n  DRA_TapSortingSchemaB +4275878552 +rwc +0 to 4294967295\n"));
    const ToolResult notAsked = runTool(
        {
            "list"
    },
        {{"TAVO_ENABLE_DRA", "yess"}});
    EXPECT_EQ(notAsked.exitCode, 0);
    EXPECT_THAT(notAsked.output, Not(HasSubstr("DRA_")));
}

}  // namespace
}  // namespace tooltest
