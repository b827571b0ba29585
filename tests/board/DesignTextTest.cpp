#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "simulation/design/DesignText.h"

using namespace simulation;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

TEST(DesignTextTest, ReadsAllStatements) {
    std::string why;
    const auto design = parseDesignText(
        "# a comment\r\n\nboard-type 2626\n\tinfo NAME \"two words # no comment\"  # comment\n"
        "register A 12 write 0xAbC\nregister B 64 read 5",
        why);
    ASSERT_TRUE(design) << why;
    EXPECT_EQ(*design, (Design{
                           2626, {{"A", 12, 1, 0xABC}, {"B", 64, 2, 5}},
                            {{"NAME", "two words # no comment"}}
    }));
}

TEST(DesignTextTest, NamesTheLineAndTheFault) {
    const std::pair<const char*, const char*> faults[]{
        {"",                                           "line 0: the text ends and no board-type"   },
        {"board-type 1\nboard-type 2",                 "line 2: the board type stands here twice"  },
        {"board-type x",                               "line 1: \"x\" is no board type"            },
        {"\n\nregistre A 1 write 0",                   "line 3: \"registre\" is no statement"      },
        {"register A 1 write",                         "line 1: the form is: register NAME"        },
        {"register A 0 write 0",                       "the width is not 1 to 64"                  },
        {"register A 1 wr 0",                          "\"wr\" is neither write nor read"          },
        {"register A 4 write 16",                      "initial value does not fit"                },
        {"register A 4 write 1\nregister A 4 write 1", "line 2: register A: the name is used twice"},
        {"info NAME \"open",                           "line 1: the closing quote is missing"      },
    };
    for (const auto& [text, reason] : faults) {
        SCOPED_TRACE(text);
        std::string why;
        EXPECT_FALSE(parseDesignText(text, why));
        EXPECT_THAT(why, HasSubstr(reason));
        EXPECT_THAT(why, StartsWith("line "));
    }
}

}  // namespace
