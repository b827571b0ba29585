#include "StandardApplets/grabber_basis/PSFx4/PSWindow.h"
#include "StandardApplets/grabber_basis/Shading/ShadingMaster.h"
#include "tests/core/GrabberTest.h"

namespace {

using ShadingTest = ModuleTest;

TEST_F(ShadingTest, ExportedFunctionsReachTheObjectOfTheShadingModule) {
    EXPECT_EQ(Fg_AllocShading(handle(), 0, 0), nullptr) << "without a shading module";
    auto* module = new PSWindow(&master(), 4096, 64, 64, 4);
    master().getHeader()->addModule(module, 2);
    EXPECT_EQ(master().getHeader()->getShadingModule(), module);
    ShadingMaster* data = Fg_AllocShading(handle(), 2, 1);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->getSet(), 2);
    EXPECT_EQ(data->getPort(), 1U);
    EXPECT_EQ(Shad_GetMaxLine(handle(), data), 4096);
    EXPECT_EQ(Shad_GetAccess(handle(), data), 0);
    EXPECT_EQ(Shad_SetSubValueLine(handle(), data, 4095, 0, 0.25F), 0);
    EXPECT_EQ(Shad_SetMultValueLine(handle(), data, 1, 0, 1.5F), 0);
    EXPECT_EQ(Shad_SetFixedPatternNoiseLine(handle(), data, 2, 0, -7), 0);
    EXPECT_EQ(Shad_WriteActLine(handle(), data, 0), 0);
    EXPECT_EQ(Shad_FreeAccess(handle(), data), 0);
    for (const int pixel : {-1, 4096}) {
        EXPECT_EQ(Shad_SetSubValueLine(handle(), data, pixel, 0, 1.0F), -2070);
        EXPECT_EQ(Shad_SetMultValueLine(handle(), data, pixel, 0, 1.0F), -2070);
        EXPECT_EQ(Shad_SetFixedPatternNoiseLine(handle(), data, pixel, 0, 1), -2070);
    }
    EXPECT_EQ(data->getValueSub(4095, 0), 0.25F);
    EXPECT_EQ(data->getValueMult(1, 0), 1.5F);
    EXPECT_TRUE(data->getValueFPN(2, 0));
    EXPECT_EQ(Fg_FreeShading(handle(), data), 0);
    EXPECT_EQ(Fg_FreeShading(handle(), nullptr), 0);
}

TEST(ShadingMasterTest, WidthGrowsWithTheHighestIndexAndInitForgets) {
    ShadingMaster data(0, 0, 4, 2);
    EXPECT_EQ(data.setValueSub(2, 9, 0.5F), 0);
    EXPECT_EQ(data.getWidth(), 3U);
    EXPECT_EQ(data.setValueMult(0, 9, 2.0F), 0);
    EXPECT_EQ(data.getWidth(), 3U);
    EXPECT_EQ(data.setValueFPN(3, 9, true), 0);
    EXPECT_EQ(data.getWidth(), 4U);
    EXPECT_EQ(data.dataSubArray()[2], 0.5F);
    EXPECT_EQ(data.dataMultArray()[0], 2.0F);
    data.setId(8);
    data.init();
    EXPECT_EQ(data.getWidth(), 0U);
    EXPECT_EQ(data.getId(), 8U);
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(data.getValueSub(i, 0), 0.0F);
        EXPECT_EQ(data.getValueMult(i, 0), 1.0F);
        EXPECT_FALSE(data.getValueFPN(i, 0));
    }
}

TEST(ShadingMasterTest, IndexBeyondTheWidthIsRefused) {
    ShadingMaster data(0, 0, 4, 2);
    for (const unsigned index : {4U, 5U, 4294967295U}) {
        EXPECT_EQ(data.setValueSub(index, 0, 1.0F), -2070);
        EXPECT_EQ(data.setValueMult(index, 0, 1.0F), -2070);
        EXPECT_EQ(data.setValueFPN(index, 0, true), -2070);
        EXPECT_EQ(data.getValueSub(index, 0), -1.0F);
        EXPECT_EQ(data.getValueMult(index, 0), -1.0F);
        EXPECT_FALSE(data.getValueFPN(index, 0));
    }
    EXPECT_EQ(data.getWidth(), 0U);
}

}  // namespace
