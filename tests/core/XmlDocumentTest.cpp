#include "tests/core/GrabberTest.h"
#include "tests/core/XmlDocument.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class WholeDocumentTest : public GrabberTest {
protected:
    /// \return the limit and access registers of a document that the applet does not answer, by name
    std::vector<std::string> unansweredRegisters(const XmlElement& root, int port) {
        std::vector<std::string> unanswered;
        for (const XmlElement& node : root.children) {
            if (node.tag != "IntReg" && node.tag != "FloatReg") continue;
            if (node.name().ends_with("_Reg")) continue;
            const auto id = static_cast<int>(static_cast<unsigned>(std::stoul(node.textOf("Address"))));
            uint64_t value = 0;
            if (Fg_getParameterWithType(handle(), id, &value, port, FG_PARAM_TYPE_AUTO) != 0) {
                unanswered.push_back(node.name());
            }
        }
        return unanswered;
    }
};

TEST_F(WholeDocumentTest, IsWellFormedAndEveryReferenceNamesANode) {
    ASSERT_EQ(open(), 0);
    for (const int port : {0, 1}) {
        SCOPED_TRACE(port);
        const std::string text = documentOf(handle(), port);
        EXPECT_THAT(text, HasSubstr("ModelName=\"Quillon8\"\n"));
        const XmlElement root = XmlReader(text).read();
        EXPECT_THAT(faultsOf(root), IsEmpty());
        EXPECT_THAT(unansweredRegisters(root, port), IsEmpty());
        int features = 0;
        for (const XmlElement& node : root.children) {
            if (node.textOf("pValue").empty()) continue;
            ++features;
            const std::string id = std::to_string(Fg_getParameterIdByName(handle(), node.name().c_str()));
            const std::string value = "<" + std::string(node.tag == "Float" ? "FloatReg" : "IntReg") + " Name=\"" +
                                      node.textOf("pValue") + "\">\n<Address>" + id + "</Address>\n";
            EXPECT_THAT(text, HasSubstr(value));
        }
        EXPECT_GE(features, 14) << "window and control alone have as many";
    }
}

TEST_F(WholeDocumentTest, FaultsAreFound) {
    ASSERT_EQ(open(), 0);
    const std::string text = documentOf(handle());
    const auto replaced = [&](const std::string& from, const std::string& to) {
        std::string changed = text;
        EXPECT_NE(changed.find(from), std::string::npos) << from;
        return changed.replace(changed.find(from), from.size(), to);
    };
    const auto faults = [](const std::string& changed) { return faultsOf(XmlReader(changed).read()); };
    EXPECT_THAT(faults(replaced("FG_WIDTH_RegMin</pMin>", "FG_WIDTH_Min</pMin>")),
                ElementsAre("FG_WIDTH pMin: FG_WIDTH_Min"));
    EXPECT_THAT(faults(replaced("FG_WIDTH_RegAccess</pVariable>", "X</pVariable>")),
                ElementsAre("FG_WIDTH_AccessSwissKnife pVariable: X"));
    EXPECT_THAT(faults(replaced("Name='FG_WIDTH'", "Name='FG_HEIGHT'")),
                ElementsAre("twice: FG_HEIGHT", "ROI pFeature: FG_WIDTH"));
    EXPECT_THAT(faults(replaced("<pFeature>FG_WIDTH</pFeature>\n", "")), ElementsAre("categories: FG_WIDTH"));
    for (const auto& [from, to] : std::initializer_list<std::pair<const char*, const char*>>{
             {"</IntReg>",              "</FloatReg>"                  },
             {"</IntReg>",              ""                             },
             {"<IntReg ",               "<IntReg Name='X' "            },
             {"'FG_WIDTH'",             "'FG_WIDTH\""                  },
             {"&lt; 2",                 "< 2"                          },
             {"&lt; 2",                 "& 2"                          },
             {"Quillon8",               "Quillon<8"                    },
             {"</RegisterDescription>", ""                             },
             {"</RegisterDescription>", "</RegisterDescription><X></X>"},
    }) {
        EXPECT_THROW(XmlReader(replaced(from, to)).read(), std::runtime_error) << from << " -> " << to;
    }
}

}  // namespace
