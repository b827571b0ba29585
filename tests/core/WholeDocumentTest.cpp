// The whole document of the applet's first port, held against tests/data/quillon.xml byte by byte.
//
// After a change of what the applet publishes, write the file anew and read the difference:
//     QUILLON_WRITE_DATA=1 build/release/tests/core_tests --gtest_filter='CheckedInDocument*' && git diff tests/data
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/core/GrabberTest.h"
#include "tests/core/XmlDocument.h"

namespace {

const char* const kFile = QUILLON_SOURCE "/tests/data/quillon.xml";

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

class CheckedInDocumentTest : public GrabberTest {
protected:
    static std::string checkedIn() {
        std::ifstream file(kFile, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(CheckedInDocumentTest, IsTheDocumentByteByByte) {
    ASSERT_EQ(open(), 0);
    const std::string document = documentOf(handle());
    if (std::getenv("QUILLON_WRITE_DATA") != nullptr) {
        std::ofstream file(kFile, std::ios::binary | std::ios::trunc);
        file << document;
        ASSERT_TRUE(file.good()) << kFile;
    }
    const std::string expected = checkedIn();
    const std::vector<std::string> lines = linesOf(document);
    const std::vector<std::string> expectedLines = linesOf(expected);
    for (size_t i = 0; i < std::max(lines.size(), expectedLines.size()); ++i) {
        ASSERT_EQ(i < lines.size() ? lines[i] : "the end", i < expectedLines.size() ? expectedLines[i] : "the end")
            << "line " << i + 1 << " of the document";
    }
    EXPECT_TRUE(document == expected) << "the line ends differ";
}

TEST_F(CheckedInDocumentTest, Has65ParametersIn17CategoriesInOrderOfTheirFirstUse) {
    const XmlElement root = XmlReader(checkedIn()).read();
    EXPECT_THAT(faultsOf(root), testing::IsEmpty());
    int features = 0;
    std::vector<std::string> categories;
    for (const XmlElement& node : root.children) {
        features += node.tag == "Integer" || node.tag == "Float" || node.tag == "Enumeration" ? 1 : 0;
        if (node.tag == "Category") categories.push_back(node.name());
    }
    EXPECT_EQ(features, 65);
    ASSERT_EQ(categories.size(), 19U) << "with the two roots";
    EXPECT_EQ(categories[0], "Root");
    EXPECT_EQ(categories[1], "AppletParameters");
    EXPECT_LT(std::find(categories.begin(), categories.end(), "ExsyncOutput"),
              std::find(categories.begin(), categories.end(), "ROI"));
}

}  // namespace
