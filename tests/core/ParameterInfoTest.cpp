#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "StandardApplets/grabber_basis/parameterInfo.h"

namespace {

constexpr LeafAttributes kLeaf{"Width", "FG_WIDTH", 3, 1, 1, "[pixels]", 100, 0};

LeafAttributes leafOnPort(int port) {
    LeafAttributes leaf = kLeaf;
    leaf.port = port;
    return leaf;
}

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

TEST_F(ParameterInfoTest, GroupsBelowGroupsKnowTheirPlace) {
    RegisterInfo* top = tree.addGroupInfo(1, nullptr, "Trigger / Exsync");
    tree.addInfoInt(top, leafOnPort(1), 0, 1, 1);
    RegisterInfo* below = tree.addGroupInfo(1, top, "Software Trigger");
    RegisterInfo* deepest = tree.addGroupInfo(1, below, "Queue");
    EXPECT_EQ(below->index, 1);
    EXPECT_EQ(below->depth, 1);
    EXPECT_EQ(below->port, 1);
    EXPECT_STREQ(below->parentName, "Trigger / Exsync");
    EXPECT_EQ(below->next, nullptr);
    EXPECT_EQ(deepest->depth, 2);
    EXPECT_STREQ(deepest->parentName, "Software Trigger");
    EXPECT_EQ(top->u.gReg.nrOfElements, 2);
    EXPECT_EQ(top->u.gReg.autoIndex, 2);
    EXPECT_EQ(top->u.gReg.elements[1], below);
    EXPECT_EQ(tree.getRegisterInfo(1), top);
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

TEST_F(ParameterInfoTest, FinalizedPortTakesNoNodeAndInitOpensItAgain) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "G");
    tree.finalize(0);
    EXPECT_EQ(tree.addGroupInfo(0, nullptr, "H"), nullptr);
    EXPECT_EQ(tree.addGroupInfo(0, group, "H"), nullptr);
    EXPECT_EQ(tree.addInfoInt(group, kLeaf, 0, 1, 1), nullptr);
    EXPECT_EQ(tree.addInfoEnum(group, kLeaf, 3), nullptr);
    EXPECT_EQ(tree.addInfoString(group, kLeaf, nullptr), nullptr);
    EXPECT_EQ(group->u.gReg.nrOfElements, 0);
    EXPECT_NE(tree.addGroupInfo(1, nullptr, "on the other port"), nullptr);
    tree.init(0);
    EXPECT_EQ(tree.getRegisterInfo(0), nullptr);
    EXPECT_NE(tree.addGroupInfo(0, nullptr, "G"), nullptr);
}

TEST_F(ParameterInfoTest, BadParentsAndPortsAddNothing) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "G");
    RegisterInfo* leaf = tree.addInfoInt(group, kLeaf, 0, 1, 1);
    EXPECT_EQ(tree.addInfoInt(nullptr, kLeaf, 0, 1, 1), nullptr);
    EXPECT_EQ(tree.addInfoInt(leaf, kLeaf, 0, 1, 1), nullptr);
    EXPECT_EQ(tree.addGroupInfo(0, leaf, "H"), nullptr);
    for (const int port : {-1, 4, 2147483647}) {
        EXPECT_EQ(tree.addGroupInfo(port, nullptr, "H"), nullptr) << port;
        EXPECT_EQ(tree.addInfoInt(group, leafOnPort(port), 0, 1, 1), nullptr) << port;
        EXPECT_EQ(tree.getRegisterInfo(port), nullptr) << port;
        tree.init(port);
        tree.finalize(port);
        tree.destroy(port);
    }
    EXPECT_EQ(group->u.gReg.nrOfElements, 1);
    EXPECT_NE(tree.addGroupInfo(3, nullptr, "the fourth port"), nullptr);
}

TEST_F(ParameterInfoTest, LargeGroupsKeepEveryChild) {
    RegisterInfo* group = tree.addGroupInfo(0, nullptr, "G");
    std::vector<RegisterInfo*> nodes;
    for (int i = 0; i < 500; ++i) nodes.push_back(tree.addInfoInt(group, kLeaf, i, i, 1));
    ASSERT_EQ(group->u.gReg.nrOfElements, 500);
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(group->u.gReg.elements[i], nodes[static_cast<size_t>(i)]);
        EXPECT_EQ(group->u.gReg.elements[i]->index, i);
    }
}

}  // namespace
