// The whole applet against the files of tests/data: the XML document, the published parameters with their tree, and
// a configuration file of the defaults.
#include "tests/TemporaryFolder.h"
#include "tests/core/CheckedInFile.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

namespace {

class CheckedInTest : public GrabberTest {
protected:
    CheckedInTest() { EXPECT_EQ(open(), 0); }

    /// \return everything that a parameter publishes on a port, with its limits or entries and its page
    std::string publishedText(int id, unsigned port) {
        const Fx3Parameter& known = record(id);
        std::string values;
        if (known.data.type == TYPE_INT) values = "int " + limitsOf(known, port);
        if (known.data.type == TYPE_DOUBLE) values = "double " + limitsOf(known, port);
        if (known.data.type == TYPE_ENUM) values = "enum " + entriesOf(known, port);
        if (known.data.type == TYPE_STRING) {
            const Fx3STRINGData& text = *known.data.stringData;
            values = "text " + text.extension[port].value_or("-") + " default '" + text.defaultString[port] + "'";
        }
        if (known.data.type == TYPE_OTHER) values = "structure";
        const RegisterInfo* group = known.description.group[port];
        return described(known, port) + "\n    " + values + "\n    group " + (group == nullptr ? "-" : group->name) +
               ", page " + known.mParent->getDocModuleURL(id) + "\n";
    }
};

TEST_F(CheckedInTest, Document) {
    const std::string document = xml(0);
    expectCheckedIn("quillon.xml", document);
    EXPECT_TRUE(xml(1) == document) << "port 1 publishes something else";
}

TEST_F(CheckedInTest, PublishedParameters) {
    std::string text;
    for (int i = 0; i < Fg_getNrOfParameter(handle()); ++i) {
        const int id = Fg_getParameterId(handle(), i);
        const std::string published = publishedText(id, 0);
        EXPECT_EQ(publishedText(id, 1), published) << "port 1";
        text += std::to_string(id) + " " + published;
    }
    std::string tree = treeOf(Fg_getParameterInfo(handle(), 0));
    EXPECT_EQ(treeOf(Fg_getParameterInfo(handle(), 1)), tree) << "port 1";
    for (size_t at = 0; (at = tree.find("; ", at)) != std::string::npos;) tree.replace(at, 2, "\n    ");
    expectCheckedIn("parameters.txt", text + "tree\n    " + tree + "\n");
}

// The file has short lines for the two knee curves.
TEST_F(CheckedInTest, SavedDefaults) {
    // Point i of the straight curve's 1025 is i / 1024, which has at most ten decimals.
    std::string straight = "FG_KNEE_LUT0=";
    for (uint64_t i = 0; i <= 1024; ++i) {
        const std::string fraction = std::to_string(i % 1024 * 976'562'500U);
        straight += (i == 0 ? "" : ", ") + std::to_string(i / 1024) + "." + std::string(12 - fraction.size(), '0');
        straight += fraction;
    }
    const TemporaryFolder files;
    ASSERT_EQ(Fg_saveConfig(handle(), files.file("defaults.mcf").c_str()), 0);
    std::string saved = files.content("defaults.mcf");
    for (const char* port : {"A", "B"}) {
        const size_t at = saved.find(straight + ";\n");
        ASSERT_NE(at, std::string::npos) << port;
        saved.replace(at, straight.size(), "FG_KNEE_LUT0=the straight line");
    }
    expectCheckedIn("defaults.mcf", saved);
}

}  // namespace
