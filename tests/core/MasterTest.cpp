#include <array>

#include "tests/core/GrabberTest.h"

namespace {

using MasterTest = ModuleTest;

TEST_F(MasterTest, ScalingFactorsFollowTheCameraCategory) {
    constexpr std::array kWidth{4, 4, 4, 2, 1, 2, 1, 4, 2, 1, 4, 2, 8, 8, 2,  4,
                                6, 6, 8, 1, 4, 4, 8, 8, 4, 1, 2, 4, 8, 3, 16, 6};
    for (int category = 0; category < 32; ++category) {
        master().setCameraCategory(category, 0);
        EXPECT_EQ(master().getDivFactor(0), kWidth[static_cast<size_t>(category)]) << category;
        EXPECT_EQ(master().getDivFactorHeight(0), category == 16 || category == 17 ? 3 : 1) << category;
    }
    for (const int category : {-1, 32, 40, 2147483647}) {
        master().setCameraCategory(category, 0);
        EXPECT_EQ(master().getDivFactor(0), 1) << category;
        EXPECT_EQ(master().getDivFactorHeight(0), 1) << category;
    }
    for (const auto& [category, width] : {
             std::pair{0,  2 },
             {2,  2 },
             {1,  4 },
             {30, 16}
    }) {
        master().setCameraCategory(category, 0);
        master().setActiveFormat(0, 1);
        EXPECT_EQ(master().getDivFactor(0), width) << category;
        master().setActiveFormat(0, 3);
        EXPECT_EQ(master().getDivFactor(0), category == 30 ? 16 : 4) << category;
    }
}

TEST_F(MasterTest, LastErrorIsThatOfTheLastRecordingCall) {
    int value = 0;
    EXPECT_EQ(lastError(), 0);
    EXPECT_EQ(set(12345, 1), -2070);
    EXPECT_EQ(lastError(), -2070);
    EXPECT_EQ(Fg_getParameterWithType(handle(), FG_APPLET_ID, &value, 0, FG_PARAM_TYPE_AUTO), 0);
    EXPECT_EQ(lastError(), 0);
    EXPECT_EQ(set(FG_APPLET_ID, 1, 7), -61);
    // None of these records anything.
    Fg_getAppletId(handle(), "Quillon");
    Fg_getNrOfParameter(handle());
    Fg_getParameterId(handle(), -1);
    Fg_getParameterName(handle(), -1);
    Fg_getParameterIdByName(handle(), "FG_NOTHING");
    Fg_getParameterInfo(handle(), 0);
    Fg_getParameterInfo(handle(), 7);
    Fg_getStatusEx(handle(), 1, 0, 0, nullptr);
    size_t size = 0;
    Fg_getParameterInfoXML(handle(), 0, nullptr, &size);
    Fg_getParameterInfoXML(handle(), 7, nullptr, &size);
    Fg_AllocShading(handle(), 0, 0);
    EXPECT_EQ(lastError(), -61);
    const int loaded = Fg_loadConfig(handle(), "/nonexistent/quillon.mcf");
    EXPECT_EQ(lastError(), loaded);
    EXPECT_LT(loaded, 0);
    EXPECT_NE(lastError(), -61);
}

}  // namespace
