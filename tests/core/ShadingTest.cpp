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

}  // namespace
