#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "StandardApplets/grabber_basis/Fg_LutFileParser.h"
#include "fabrix/result_codes.h"
#include "tests/TemporaryFolder.h"
#include "tests/core/DecimalCommaLocale.h"

using testing::ElementsAre;

namespace {

class LutFileTest : public testing::Test {
protected:
    /// Reads a knee table of \p count points.
    std::vector<double> readKnee(const std::string& path, const char* section, uint32_t count) {
        KneeLookupTable_s table{};
        table.nrOfElements = count;
        EXPECT_EQ(parser.getLutFromFile(path.c_str(), &table, section), 0);
        const std::unique_ptr<double[]> owned(table.value);
        if (table.value == nullptr) return {};
        return {table.value, table.value + count};
    }
    static KneeLookupTable_s knee(std::vector<double>& values) {
        KneeLookupTable_s table{};
        table.value = values.data();
        table.nrOfElements = static_cast<uint32_t>(values.size());
        return table;
    }
    /// Reads a plain table into \p table, which the test owns from then on.
    int readPlain(const std::string& content) {
        const std::string path = files.write("plain.lut", content);
        const int result = parser.getLutFromFile(path.c_str(), &plain, "");
        plainEntries.assign(plain.lut, plain.lut + (plain.lut == nullptr ? 0 : plain.nrOfElements));
        return result;
    }
    ~LutFileTest() override { delete[] plain.lut; }

    TemporaryFolder files;
    Fg_LutFileParser parser;
    LookupTable_s plain{};
    std::vector<uint32_t> plainEntries;
};

TEST_F(LutFileTest, WritesPlainTable) {
    uint32_t entries[] = {7, 4294967295u, 0};
    const LookupTable_s table{entries, 5, 3, 12, 255};
    EXPECT_EQ(parser.saveLutToFile(files.file("a.lut").c_str(), &table), 0);
    // The parser still holds the file, and yet it is complete.
    EXPECT_EQ(files.content("a.lut"),
              "# Lut data file v1.1\n\nid=5;\nnrOfElements=3;\nformat=12;\nnumber=255;\n0,7;\n1,-1;\n2,0;\n");
    EXPECT_EQ(readPlain(files.content("a.lut")), 0);
    EXPECT_THAT(plainEntries, ElementsAre(7u, 4294967295u, 0u));
    EXPECT_EQ(plain.id, 5u);
    EXPECT_EQ(plain.format, 12u);
    EXPECT_EQ(plain.number, 255);
    EXPECT_EQ(readPlain("0,9;\nnumber=4;\nformat=3;\nnrOfElements=1;\nid=2;\n"), 0) << "in any order";
    EXPECT_THAT(plainEntries, ElementsAre(9u));
    EXPECT_EQ(plain.id, 2u);
}

TEST_F(LutFileTest, WritesOneKneeTable) {
    std::vector<double> values{0.0, 1023.5, -0.25, 1.0 / 3};
    const KneeLookupTable_s table = knee(values);
    EXPECT_EQ(parser.saveLutToFile(files.file("a.lut").c_str(), &table, "[gray]"), 0);
    EXPECT_EQ(files.content("a.lut"),
              "# KneeLut data file v1.0\n\n[gray]\n\n0,0.000000000000;\n1,1023.500000000000;\n2,-0.250000000000;\n"
              "3,0.333333333333;\n");
    values.clear();
    const KneeLookupTable_s none = knee(values);
    EXPECT_EQ(parser.saveLutToFile(files.file("b.lut").c_str(), &none, "[gray]"), 0);
    EXPECT_EQ(files.content("b.lut"), "# KneeLut data file v1.0\n\n[gray]\n\n");
}

TEST_F(LutFileTest, FilesThatCannotBeUsedAreRefused) {
    std::vector<double> values{1.0};
    const KneeLookupTable_s table = knee(values);
    KneeLookupTable_s read{};
    int number = 0;
    for (const std::string& name : {files.file("a.txt"), files.file("missing/a.lut"), files.makeFull("full.lut")}) {
        EXPECT_EQ(parser.saveLutToFile(name.c_str(), &table, "[gray]"), FG_ERROR) << name;
        EXPECT_EQ(parser.saveLutToFile(name.c_str(), &table, &table, &table), FG_ERROR) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(files / "a.txt"));
    EXPECT_EQ(parser.getLutFromFile(files.file("missing.lut").c_str(), &read, "[gray]"), FG_ERROR);
    EXPECT_EQ(parser.getLutFromFile(files.write("a.LUT", "[gray]\n0,1;\n").c_str(), &read, "[gray]"), FG_ERROR);
    EXPECT_EQ(parser.getLutFromFile(nullptr, &read, "[gray]"), FG_ERROR);
    EXPECT_EQ(parser.getMatrixFromFile(files.file("missing").c_str(), &number, 1), FG_ERROR);
    EXPECT_EQ(read.value, nullptr);
}

TEST_F(LutFileTest, NumbersDoNotFollowTheLocale) {
    const DecimalCommaLocale comma;
    ASSERT_TRUE(comma.isActive());
    std::vector<double> values{0.5};
    const KneeLookupTable_s table = knee(values);
    const std::string path = files.file("a.lut");
    EXPECT_EQ(parser.saveLutToFile(path.c_str(), &table, "[gray]"), 0);
    parser.writeDoubleKey("key", 1e-20, "=");
    EXPECT_EQ(files.content("a.lut"), "# KneeLut data file v1.0\n\n[gray]\n\n0,0.500000000000;\nkey=1e-20;\n");
    EXPECT_THAT(readKnee(path, "[gray]", 1), ElementsAre(0.5));
}

TEST_F(LutFileTest, WritesAndReadsThreeKneeTables) {
    std::vector<double> r{0.0, 1.0}, g{0.5, 0.75}, b{0.125, 2.0};
    const KneeLookupTable_s red = knee(r), green = knee(g), blue = knee(b);
    const std::string path = files.file("c.lut");
    EXPECT_EQ(parser.saveLutToFile(path.c_str(), &red, &green, &blue), 0);
    EXPECT_EQ(files.content("c.lut"),
              "# KneeLut data file v1.1\n\n[red]\n\n0,0.000000000000;\n1,1.000000000000;\n\n\n[green]\n\n"
              "0,0.500000000000;\n1,0.750000000000;\n\n\n[blue]\n\n0,0.125000000000;\n1,2.000000000000;\n");
    EXPECT_THAT(readKnee(path, "[red]", 2), ElementsAre(0.0, 1.0));
    EXPECT_THAT(readKnee(path, "[green]", 2), ElementsAre(0.5, 0.75));
    EXPECT_THAT(readKnee(path, "[blue]", 2), ElementsAre(0.125, 2.0));
    // Nothing ends a section: with a point too many, the search goes on to the end of the file.
    EXPECT_THAT(readKnee(path, "[red]", 3), ElementsAre(0.0, 1.0, 0.0));
}

TEST_F(LutFileTest, IntegerArraysKeepTheirBounds) {
    const int values[] = {3, -4};
    const std::string path = files.file("matrix.txt");
    EXPECT_EQ(parser.saveMatrixToFile(path.c_str(), "head\n", values, 2), 0);
    EXPECT_EQ(files.content("matrix.txt"), "head\nnrOfElements=2;\n0,3;\n1,-4;\n");
    std::vector<int> read(2, 9);
    EXPECT_EQ(parser.getMatrixFromFile(path.c_str(), read.data(), 1), FG_ERROR);
    EXPECT_THAT(read, ElementsAre(9, 9));
    EXPECT_EQ(parser.getMatrixFromFile(path.c_str(), read.data(), 2), 0);
    EXPECT_THAT(read, ElementsAre(3, -4));
    const std::string negative = files.write("negative", "nrOfElements=-5;\n0,1;\n");
    EXPECT_EQ(parser.getMatrixFromFile(negative.c_str(), read.data(), 2), 0);
    EXPECT_THAT(read, ElementsAre(3, -4));
}

}  // namespace
