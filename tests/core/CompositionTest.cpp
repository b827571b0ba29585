#include <algorithm>

#include "tests/core/GrabberTest.h"

namespace {

/// The whole applet, opened through its entry function.
using CompositionTest = GrabberTest;

TEST_F(CompositionTest, SwitchingThePortRewritesThatPortBeforeTheStart) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(Fg_AcquireEx(handle(), 1, 3, 1, FakeBoard::memory()), 0);
    const auto start = std::find_if(board.events.begin(), board.events.end(),
                                    [](const auto& event) { return event.starts_with("start "); });
    const auto window = std::find(board.events.begin(), board.events.end(), "write AAAreaWidth 63");
    const auto reset = std::find(board.events.begin(), board.events.end(), "write AAReset 1");
    EXPECT_LT(window, reset);
    EXPECT_LT(reset, start);
    EXPECT_THAT(board.eventsOf("write AACamSelect"), IsEmpty());
    board.clearEvents();
    EXPECT_EQ(Fg_AcquireEx(handle(), 0, 3, 1, FakeBoard::memory()), -2090);
    EXPECT_FALSE(board.eventsOf("write AAAreaWidth").empty());
    EXPECT_THAT(board.eventsOf("start "), IsEmpty());
    EXPECT_EQ(set(FG_WIDTH, 512), -7090);
}

/// \return the node of a parameter below a group, null where it is not there
const RegisterInfo* nodeIn(const RegisterInfo& group, const std::string& name) {
    for (int i = 0; i < group.u.gReg.nrOfElements; ++i) {
        const RegisterInfo* node = group.u.gReg.elements[i];
        if (node->format == REG_FORMAT_GROUP) node = nodeIn(*node, name);
        if (node != nullptr && node->parameterName == name) return node;
    }
    return nullptr;
}

TEST_F(CompositionTest, TheTreeOfAHostShowsTheLimitsOfTheMoment) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(set(FG_TRIGGERMODE, 1), 0);
    const RegisterInfo* exposure = nullptr;
    const RegisterInfo* group = Fg_getParameterInfo(handle(), 0);
    for (; group != nullptr && exposure == nullptr; group = group->next) exposure = nodeIn(*group, "FG_EXPOSURE");
    ASSERT_NE(exposure, nullptr);
    EXPECT_EQ(set(FG_FRAMESPERSEC, 100.0), 0);
    EXPECT_EQ(exposure->u.iReg.to, 9980);
    EXPECT_EQ(exposure->u.iReg.to, maximum(FG_EXPOSURE));
}

TEST_F(CompositionTest, GrabbersAreIndependent) {
    ASSERT_EQ(open(), 0);
    int err = -1;
    Fg_Struct other{Std_entry(FakeBoard::device(), &err, 0)};
    ASSERT_NE(other.Master, nullptr);
    EXPECT_EQ(set(FG_WIDTH, 512), 0);
    int width = 0;
    EXPECT_EQ(Fg_getParameterWithType(&other, FG_WIDTH, &width, 0, FG_PARAM_TYPE_INT32_T), 0);
    EXPECT_EQ(width, 1024);
    EXPECT_EQ(set(12345, 1), -2070);
    EXPECT_EQ(Fg_getLastErrorNumber(&other), 0);
    EXPECT_EQ(Fg_FreeGrabber(&other), 0);
    EXPECT_EQ(Fg_FreeGrabber(nullptr), 0);
    EXPECT_EQ(get(FG_WIDTH), 512);
}

}  // namespace
