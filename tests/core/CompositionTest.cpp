#include <algorithm>
#include <cstdlib>

#include "tests/core/GrabberTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// The whole applet, opened through its entry function.
class CompositionTest : public GrabberTest {
protected:
    CompositionTest() { forget(); }
    ~CompositionTest() override { forget(); }
    static void forget() {
        unsetenv("TAVO_ENABLE_DRA");
        unsetenv("__TAVO_FORCE_EXTERNAL_HAP");
    }
    /// \return the events of the start-up, all of them or those before the first configuration
    size_t indexOf(const std::string& event) const {
        const auto found = std::find(mStartUpEvents.begin(), mStartUpEvents.end(), event);
        return static_cast<size_t>(found - mStartUpEvents.begin());
    }
};

TEST_F(CompositionTest, StartUpLoadsConfiguresAndEndsWithSdramAndBothResets) {
    ASSERT_EQ(open(), 0);
    ASSERT_GT(mStartUpEvents.size(), 26U);
    EXPECT_TRUE(mStartUpEvents[0].starts_with("load embedded size="));
    EXPECT_TRUE(mStartUpEvents[0].ends_with(" flag=1"));
    EXPECT_EQ(mStartUpEvents[1], "configure");
    const std::vector<std::string> last(mStartUpEvents.end() - 25, mStartUpEvents.end());
    std::vector<std::string> expected{"write AASdramEnable 1"};
    for (int pulse = 0; pulse < 2; ++pulse) {
        for (int i = 0; i < 6; ++i) {
            expected.push_back(i < 5 ? "write AAReset 1" : "write AAReset 0");
            expected.push_back("status 0");
        }
    }
    EXPECT_THAT(last, ElementsAreArray(expected));
    EXPECT_EQ(std::count(mStartUpEvents.begin(), mStartUpEvents.end(), "write AACamSelect 0"), 2);
    EXPECT_THAT(board.eventsOf("read AAFreqCount"), IsEmpty());
    EXPECT_EQ(master().getActivePort(), 0);
    EXPECT_EQ(get(FG_DMASTATUS), 0);
    EXPECT_EQ(lastError(), 0);
}

TEST_F(CompositionTest, CameraIsDescribed) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(Fg_getAppletId(handle(), "any name"), 172032096);
    EXPECT_EQ(get(FG_APPLET_VERSION), 1);
    EXPECT_EQ(get(FG_APPLET_REVISION), 1);
    EXPECT_EQ(get(FG_TWOCAMMODEL), 0);
    EXPECT_EQ(get(FG_LINEALIGNMENT), 32);
    EXPECT_TRUE(master().getIsMedium());
    EXPECT_TRUE(master().getIsFull());
    EXPECT_STREQ(master().getCameraType(), "Quillon8");
    EXPECT_STREQ(master().getCameraVersion(), "1.1");
    for (const int port : {0, 1}) {
        EXPECT_EQ(master().isCameraColor(port), 0);
        EXPECT_EQ(master().getIsArea(port), 1);
        EXPECT_EQ(master().getCameraCategory(port), 30);
        EXPECT_EQ(master().getDivFactor(port), 16);
        EXPECT_EQ(master().getDivFactorHeight(port), 1);
        EXPECT_EQ(get(FG_TIMEOUT, port), 1000000);
    }
    EXPECT_EQ(get(FG_WIDTH), 1024);
    EXPECT_EQ(board.value("AAAreaWidth"), 63U);
    EXPECT_EQ(board.value("AAAreaHeight"), 1023U);
    EXPECT_EQ(Fg_AllocShading(handle(), 0, 0), nullptr);
    EXPECT_EQ(set(FG_WIDTH, 512, 1), -61);
    EXPECT_EQ(master().getHeader()->getRegisterInitSuccess(), 0);
}

TEST_F(CompositionTest, NullDesignGoesOnAndIsNeverUnloaded) {
    board.embeddedDesign = nullptr;
    EXPECT_EQ(open(), 0);
    EXPECT_NE(mHandle.Master, nullptr);
    EXPECT_EQ(mHandle.Master->getDesign(), nullptr);
    free();
    EXPECT_THAT(board.eventsOf("unload"), IsEmpty());
}

TEST_F(CompositionTest, RefusedConfigurationUnloadsOnce) {
    for (const int code : {-1, -6, -9004}) {
        board.configureResult = code;
        EXPECT_EQ(open(), code);
        EXPECT_EQ(mHandle.Master, nullptr);
        EXPECT_EQ(std::count(mStartUpEvents.begin(), mStartUpEvents.end(), "unload"), 1);
        EXPECT_EQ(mStartUpEvents.back(), "unload");
        EXPECT_EQ(mStartUpEvents.size(), 3U);
        board.events.clear();
    }
    board.embeddedDesign = nullptr;
    EXPECT_EQ(open(), -9004);
    EXPECT_EQ(std::count(mStartUpEvents.begin(), mStartUpEvents.end(), "unload"), 0);
}

TEST_F(CompositionTest, NullDeviceIsRefusedByTheConfiguration) {
    int err = 0;
    EXPECT_EQ(Std_entry(nullptr, &err, 0), nullptr);
    EXPECT_EQ(err, -6);
    EXPECT_EQ(board.events.size(), 2U);
    EXPECT_THAT(board.eventsOf("unload"), ElementsAre(""));
}

TEST_F(CompositionTest, ExternalDesignIsTriedWhenTheVariableIsDefined) {
    ASSERT_EQ(open(), 0);
    EXPECT_TRUE(mStartUpEvents[0].starts_with("load embedded"));
    free();
    for (const char* value : {"", "0", "no", "1"}) {
        setenv("__TAVO_FORCE_EXTERNAL_HAP", value, 1);
        board.clearEvents();
        EXPECT_EQ(open(), 0);
        EXPECT_EQ(mStartUpEvents[0], "load Quilmo.stdhap type=2626 flag=1");
        EXPECT_TRUE(mStartUpEvents[1].starts_with("load embedded"));
        free();
    }
    int token = 0;
    board.externalDesign = reinterpret_cast<fpga_design*>(&token);
    board.clearEvents();
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(mStartUpEvents[1], "configure");
    EXPECT_EQ(mHandle.Master->getDesign(), board.externalDesign);
}

TEST_F(CompositionTest, DesignWithoutRegistersStillOpens) {
    board.removeAllRegisters();
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(master().getHeader()->getRegisterInitSuccess(), -7040);
    EXPECT_EQ(set(FG_WIDTH, 64), -6000) << "no register, no width";
    EXPECT_EQ(set(FG_TIMEOUT, 64), 0);
    EXPECT_EQ(Fg_AcquireEx(handle(), 0, 1, 1, FakeBoard::memory()), 0);
}

TEST_F(CompositionTest, DesignWithAnyOneRegisterMissingStillOpens) {
    const auto registers = board.registers;
    for (const auto& missing : registers) {
        SCOPED_TRACE(missing.name);
        board.registers = registers;
        board.removeRegister(missing.name);
        EXPECT_EQ(open(), 0);
        EXPECT_NE(Fg_getParameterInfo(handle(), 0), nullptr);
        free();
    }
}

TEST_F(CompositionTest, FailingWritesDoNotRefuseTheGrabber) {
    ASSERT_EQ(open(), 0);
    const size_t writes = static_cast<size_t>(std::count_if(
        mStartUpEvents.begin(), mStartUpEvents.end(), [](const auto& event) { return event.starts_with("write "); }));
    free();
    for (size_t n = 1; n <= writes; n += 7) {
        board.failNthWrite(static_cast<int>(n), -77);
        EXPECT_EQ(open(), 0) << n;
        free();
    }
}

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
    EXPECT_EQ(get(FG_WIDTH), 512);
}

}  // namespace
