#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "StandardApplets/grabber_basis/parameterInfo.h"

namespace {

constexpr LeafAttributes kLeaf{"Width", "FG_WIDTH", 3, 1, 1, "[pixels]", 100, 0};

class ParameterInfoTest : public testing::Test {
protected:
    Fg_ParameterInfo tree;
};

TEST_F(ParameterInfoTest, TopLevelGroupsStandInReverseOrder) {
    EXPECT_EQ(tree.getRegisterInfo(0), nullptr);
    RegisterInfo* a = tree.addGroupInfo(0, nullptr, "A");
    RegisterInfo* b = tree.addGroupInfo(0, nullptr, "B");
    RegisterInfo* c = tree.addGroupInfo(0, nullptr, "C");
    EXPECT_EQ(tree.getRegisterInfo(0), c);
    EXPECT_EQ(tree.getNextRegisterInfo(nullptr, 0), c);
    EXPECT_EQ(tree.getNextRegisterInfo(c, 0), b);
    EXPECT_EQ(b->next, a);
    EXPECT_EQ(a->next, nullptr);
    EXPECT_EQ(a->previous, b);
    EXPECT_EQ(b->previous, c);
    EXPECT_EQ(c->previous, nullptr);
    EXPECT_STREQ(a->name, "A");
    EXPECT_EQ(a->parameterName, nullptr);
    EXPECT_EQ(a->unit, nullptr);
    EXPECT_EQ(a->parentName, nullptr);
    EXPECT_EQ(a->depth, 0);
    EXPECT_EQ(a->format, REG_FORMAT_GROUP);
    EXPECT_EQ(tree.getRegisterInfo(1), nullptr);
}

TEST_F(ParameterInfoTest, LeavesCarryTheirAttributesAndCopyTheirTexts) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "ROI");
    std::string name = "Width";
    LeafAttributes leaf = kLeaf;
    leaf.name = name.c_str();
    const RegisterInfo* node = tree.addInfoInt(group, leaf, -3, 65536, 16);
    name = "gone!";
    EXPECT_EQ(node->format, REG_FORMAT_INT);
    EXPECT_STREQ(node->name, "Width");
    EXPECT_STREQ(node->parameterName, "FG_WIDTH");
    EXPECT_STREQ(node->unit, "[pixels]");
    EXPECT_EQ(std::tuple(node->accessFlags, node->rangeFlags, node->visibilityFlags, node->id),
              std::tuple(3, 1, 1, 100));
    EXPECT_EQ(std::tuple(node->u.iReg.from, node->u.iReg.to, node->u.iReg.steps), std::tuple(-3, 65536, 16));
    EXPECT_EQ(node->parentName, nullptr);
    leaf.unit = nullptr;
    const RegisterInfo* second = tree.addInfoDouble(group, leaf, 0.5, 1.5, 0.25);
    EXPECT_EQ(second->unit, nullptr);
    EXPECT_EQ(second->index, 1);
    EXPECT_EQ(std::tuple(second->u.dReg.from, second->u.dReg.to, second->u.dReg.steps), std::tuple(0.5, 1.5, 0.25));
}

TEST_F(ParameterInfoTest, EnumerationEntriesAreFilledAndReplaced) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "G");
    RegisterInfo* node = tree.addInfoEnum(group, kLeaf, 3);
    ASSERT_EQ(node->u.eReg.nrOfElements, 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(node->u.eReg.enumNames[i], nullptr);
        EXPECT_EQ(node->u.eReg.enumDefName[i], nullptr);
        EXPECT_EQ(node->u.eReg.enumValues[i], 0);
    }
    EXPECT_EQ(tree.addEnumNameValue(node, 0, "first", 7, "FG_FIRST"), 0);
    EXPECT_EQ(tree.addEnumNameValue(node, 2, "old", 9, "FG_OLD"), 0);
    EXPECT_EQ(tree.addEnumNameValue(node, 2, "new", -9, nullptr), 0);
    EXPECT_STREQ(node->u.eReg.enumNames[2], "new");
    EXPECT_EQ(node->u.eReg.enumDefName[2], nullptr);
    EXPECT_EQ(node->u.eReg.enumValues[2], -9);
    for (const int element : {-1, 3}) EXPECT_EQ(tree.addEnumNameValue(node, element, "x", 1, nullptr), -2070);

    const EnumField_ entries[] = {
        {"Auto", 0, "NONE" },
        {"Read", 1, nullptr}
    };
    Fg_ParameterInfo::replaceEntries(*node, entries);
    ASSERT_EQ(node->u.eReg.nrOfElements, 2);
    EXPECT_STREQ(node->u.eReg.enumNames[1], "Read");
    EXPECT_EQ(node->u.eReg.enumDefName[1], nullptr);
    EXPECT_STREQ(node->u.eReg.enumDefName[0], "NONE");
    EXPECT_EQ(node->u.eReg.enumValues[1], 1);
    Fg_ParameterInfo::replaceEntries(*node, {});
    EXPECT_EQ(node->u.eReg.nrOfElements, 0);
    EXPECT_EQ(tree.addInfoEnum(group, kLeaf, -4)->u.eReg.nrOfElements, 0);
}

}  // namespace
