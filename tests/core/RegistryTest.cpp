#include "tests/core/GrabberTest.h"
#include "tests/core/ProbeModule.h"

namespace {

int selected(int id, unsigned selector) { return static_cast<int>(static_cast<unsigned>(id) | selector); }

/// Two probe modules beside the control module; "a" owns 70 (integer) and 73 (text), "b" 71 and 72.
class RegistryTest : public ModuleTest {
protected:
    RegistryTest() : a(*new ProbeModule(&master(), "a", calls)), b(*new ProbeModule(&master(), "b", calls)) {
        registry().addModule(&a, 0);
        registry().addModule(&b, 0);
        a.make(70, TYPE_INT, "FG_SEVENTY");
        b.make(72, TYPE_ENUM, "FG_SEVENTY_TWO");
        b.make(71, TYPE_DOUBLE, "FG_SEVENTY_ONE");
        a.make(73, TYPE_STRING, "FG_TEXT");
        registry().setLimits(70, 0, -5, 100, 5, 0, false);
        registry().setLimits(70, 1, 0, 50, 5, 0, false);
    }
    ~RegistryTest() override {
        Fg_FreeGrabber(&mHandle);  // the modules note their end in a member of this class
        mHandle.Master = nullptr;
    }
    Fx3ParameterHeader& registry() { return *master().getHeader(); }

    std::vector<std::string> calls;
    ProbeModule& a;
    ProbeModule& b;
};

TEST_F(RegistryTest, WriteStoresUpdatesAndRefreshesUntilAFailure) {
    registry().addUpdateDependency(0, 70, 71, false);
    EXPECT_EQ(set(selected(70, 0x40000000), 10, 1), 0);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=1", "a: update 70 port=1", "b: update 71 port=1"));
    calls.clear();
    a.updateResults[70] = 8803;
    EXPECT_EQ(set(70, 10), 8803);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=0", "a: update 70 port=0"));
    calls.clear();
    a.setResult = -11;
    EXPECT_EQ(set(70, 10), -11);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=0"));
}

TEST_F(RegistryTest, RefusalsComeInTheirOrderAndChangeNothing) {
    master().setIsMedium(true);
    EXPECT_EQ(set(69, 10, 1), -2070);
    record(70).access.accessFlag = {1, 1};
    EXPECT_EQ(set(70, 3, 1, FG_PARAM_TYPE_DOUBLE), -61);
    EXPECT_EQ(set(70, 3, 0, FG_PARAM_TYPE_DOUBLE), -8010);
    record(70).access.accessFlag = {3, 3};
    master().getImageControl()->setImageDMATransferActive(0, true);
    EXPECT_EQ(set(70, 3, 0, FG_PARAM_TYPE_DOUBLE), -7090);
    master().getImageControl()->setImageDMATransferActive(0, false);
    EXPECT_EQ(set(70, 3, 0, FG_PARAM_TYPE_DOUBLE), -2070);
    EXPECT_EQ(set(70, 103, 0), -6000);
    EXPECT_EQ(set(70, 3, 0), -7080);
    EXPECT_EQ(lastError(), -7080);
    EXPECT_THAT(calls, IsEmpty());
    int value = 0;
    EXPECT_EQ(registry().getParameterById(70, &value, 1), 0);
    EXPECT_EQ(value, 4711);
}

TEST_F(RegistryTest, LastDependencyGivesTheResult) {
    registry().addUpdateDependency(0, 70, 71, false);
    registry().addUpdateDependency(0, 70, 12345, false);
    registry().addUpdateDependency(0, 70, 72, false);
    registry().addUpdateDependency(0, 71, 73, false);
    b.updateResults[71] = -71;
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_THAT(calls,
                ElementsAre("a: set 70 port=0", "a: update 70 port=0", "b: update 71 port=0", "b: update 72 port=0"));
    b.updateResults[72] = -72;
    EXPECT_EQ(set(70, 10), -72);
    EXPECT_EQ(registry().updateDependency(72, 0), 0);
    EXPECT_EQ(registry().updateDependency(12345, 0), 0);
}

TEST_F(RegistryTest, DependenciesReachWholeModulesAndDescriptions) {
    registry().addUpdateDependency(0, 70, 71, true);
    registry().addUpdateDependency(1, 70, 71, false);
    registry().addUpdateDependency(1, 70, 71, true);
    EXPECT_EQ(registry().addUpdateDependency(1, 70, 71, true), 0);
    EXPECT_EQ(registry().addUpdateDependency(1, 12345, 71, true), 0);
    EXPECT_EQ(record(70).description.paramUpdateDep.size(), 3U);
    EXPECT_EQ(set(70, 10, 1), 0);
    EXPECT_THAT(calls,
                ElementsAre("a: set 70 port=1", "a: update 70 port=1", "b: all port=1", "b: describe port=1 defaults=0",
                            "a: describe port=0 defaults=0", "b: describe port=0 defaults=0",
                            "a: describe port=1 defaults=0", "b: describe port=1 defaults=0"));
}

TEST_F(RegistryTest, ChangedActivePortRewritesEverythingForTheNewPort) {
    registry().addUpdateDependency(0, 70, 71, false);
    a.portToSet = 1;
    a.allResult = -3;
    b.allResult = -4;
    EXPECT_EQ(set(70, 10), -7);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=0", "a: all port=1", "b: all port=1"));
    calls.clear();
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=0", "a: update 70 port=0", "b: update 71 port=0"));
    calls.clear();
    mFabrixBoard->setIsDualDesign(true);
    a.portToSet = 0;
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_THAT(calls, ElementsAre("a: set 70 port=0", "a: update 70 port=0", "b: update 71 port=0"));
}

TEST_F(RegistryTest, InvalidatedDescriptionsAreRedoneBeforeTheUpdate) {
    registry().changeAllowAllAccess(0);
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_EQ(calls.size(), 2U);
    calls.clear();
    registry().changeAllowAllAccess(3);
    EXPECT_EQ(registry().getAllowAllAccess(), 3);
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_THAT(calls,
                ElementsAre("a: set 70 port=0", "a: describe port=0 defaults=0", "b: describe port=0 defaults=0",
                            "a: describe port=1 defaults=0", "b: describe port=1 defaults=0", "a: update 70 port=0"));
    calls.clear();
    EXPECT_EQ(set(70, 10), 0);
    EXPECT_EQ(calls.size(), 2U);
}

}  // namespace
