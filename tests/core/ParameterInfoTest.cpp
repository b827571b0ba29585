#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include "StandardApplets/grabber_basis/parameterInfo.h"

namespace {

constexpr LeafAttributes kLeaf{"Width", "FG_WIDTH", 3, 1, 1, "[pixels]", 100, 0};

class ParameterInfoTest : public testing::Test {
protected:
    Fg_ParameterInfo tree;
};

TEST_F(ParameterInfoTest, EveryLeafHasItsKindAndUnionMembers) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "G");
    EXPECT_EQ(tree.addInfoUInt(group, kLeaf, 1, 4294967295U, 2)->u.uiReg.to, 4294967295U);
    EXPECT_EQ(tree.addInfoInt64(group, kLeaf, -1, int64_t{1} << 40, 3)->u.iReg64.to, int64_t{1} << 40);
    EXPECT_EQ(tree.addInfoUInt64(group, kLeaf, 1, ~uint64_t{0}, 3)->u.iReg64.to, -1);
    const auto& integers = tree.addInfoIntField(group, kLeaf, 1024, -5, 7, 1)->u.ifReg;
    EXPECT_EQ(std::tuple(integers.nrOfElements, integers.to, integers.index, integers.value),
              std::tuple(1024, 7, 0, -5));
    const auto& unsigneds = tree.addInfoUIntField(group, kLeaf, 3, 5, 7, 1)->u.uifReg;
    EXPECT_EQ(std::tuple(unsigneds.nrOfElements, unsigneds.value), std::tuple(3, 5U));
    const auto& doubles = tree.addInfoDoubleField(group, kLeaf, 4, 0.5, 7.5, 0.1)->u.dfReg;
    EXPECT_EQ(std::tuple(doubles.nrOfElements, doubles.to, doubles.value), std::tuple(4, 7.5, 0.5));
    EXPECT_STREQ(tree.addInfoString(group, kLeaf, "*.html")->u.sReg.FileExtension, "*.html");
    EXPECT_EQ(tree.addInfoString(group, kLeaf, nullptr)->u.sReg.FileExtension, nullptr);
    const int formats[] = {REG_FORMAT_UINT,      REG_FORMAT_INT64,       REG_FORMAT_UINT64, REG_FORMAT_INTFIELD,
                           REG_FORMAT_UINTFIELD, REG_FORMAT_DOUBLEFIELD, REG_FORMAT_STRING, REG_FORMAT_STRING};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(group->u.gReg.elements[i]->format, formats[i]) << i;
}

TEST_F(ParameterInfoTest, EntriesOfTheSameCountKeepTheirArrays) {
    RegisterInfo* node = tree.addInfoEnum(tree.addGroupInfo(0, nullptr, "G"), kLeaf, 2);
    const EnumReg& entries = node->u.eReg;
    constexpr std::array<EnumField, 3> kFields{
        {{"Off", 0, "FG_OFF"}, {"On", 7, nullptr}, {"Auto", 4294967295U, "FG_AUTO"}}
    };
    const auto* names = entries.enumNames;
    const auto* values = entries.enumValues;
    const auto* definitions = entries.enumDefName;
    for (const size_t first : {0U, 1U}) {
        Fg_ParameterInfo::replaceEntries(*node, std::span(kFields).subspan(first, 2));
        EXPECT_EQ(std::tuple(entries.enumNames, entries.enumValues, entries.enumDefName),
                  std::tuple(names, values, definitions));
        EXPECT_STREQ(entries.enumNames[0], kFields[first].name);
        EXPECT_EQ(entries.enumValues[0], static_cast<int>(kFields[first].value));
        EXPECT_STREQ(entries.enumDefName[1], kFields[first + 1].defName);
    }
    Fg_ParameterInfo::replaceEntries(*node, kFields);
    EXPECT_EQ(entries.nrOfElements, 3);
    EXPECT_STREQ(entries.enumNames[2], "Auto");
    EXPECT_EQ(entries.enumValues[2], -1);
}

}  // namespace
