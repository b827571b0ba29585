#include <stdexcept>

#include "StandardApplets/grabber_basis/PSFx4/PSDirectReg.h"
#include "haprt/src/haprt_loader.h"
#include "tests/core/Described.h"
#include "tests/core/GrabberTest.h"

namespace {

/// Three registers: 50001 may be written, 50002 is read only, 50003 is 32 bits wide.
class DirectRegTest : public ModuleTest {
protected:
    DirectRegTest() {
        board.registers = {
            {"AAWidth", 12, 1},
            {"AABusy", 1, 2, 1},
            {"AAWide", 32, 1}
        };
    }
    Fx3ParameterHeader& registry() { return *master().getHeader(); }
    bool isKnown(int id) { return registry().searchParameterById(id) != nullptr; }
};

TEST_F(DirectRegTest, EveryRegisterIsAParameter) {
    PSDirectReg& module = add<PSDirectReg>();
    for (const unsigned port : {0u, 1u}) {
        EXPECT_EQ(described(record(50001), port), "DRA_AAWidth | AAWidth | - | 7010 | No Description for this item.");
        EXPECT_EQ(described(record(50002), port), "DRA_AABusy | AABusy | - | 1010 | No Description for this item.");
    }
    const Fx3DIRECTData& data = *record(50003).data.directData;
    EXPECT_EQ(data.regPtr, 3);
    EXPECT_EQ(data.direction, 1);
    EXPECT_EQ(data.bitRange, 32);
    EXPECT_STREQ(data.regName, "AAWide");
    EXPECT_EQ(registry().getParameterIdByName("DRA_AAWidth"), 50001);
    EXPECT_FALSE(isKnown(50000));
    EXPECT_FALSE(isKnown(50004));
    EXPECT_EQ(module.getDocModuleURL(50001), nullptr);
    EXPECT_EQ(module.getRegisterInitSuccess(), 0);
}

TEST_F(DirectRegTest, TreeShowsNameAndWidth) {
    PSDirectReg& module = add<PSDirectReg>();
    registry().finalizeDescriptionsOnPort(1);
    EXPECT_EQ(module.addStandardPS(1, true), 0);
    EXPECT_EQ(module.addStandardPS(2, true), -61);
    const RegisterInfo* group = registry().getRegisterInfo(1);
    EXPECT_EQ(treeOf(group), "Reg. Direct Access: AAWidth (12), AABusy (1), AAWide (32)");
    EXPECT_STREQ(group->u.gReg.elements[0]->parameterName, "DRA_AAWidth");
    EXPECT_EQ(group->u.gReg.elements[0]->u.iReg.to, 4095);
    EXPECT_EQ(group->u.gReg.elements[0]->port, 1);
    EXPECT_EQ(group->u.gReg.elements[1]->accessFlags, 1);
    EXPECT_THROW(module.setRegisterInfoTree(0), std::runtime_error);
}

TEST_F(DirectRegTest, WritesGoThroughUncutAndWithoutSign) {
    add<PSDirectReg>();
    EXPECT_EQ(set(50001, 5), 0);
    EXPECT_EQ(set(50001, -1, 1), 0);
    master().getImageControl()->setImageDMATransferActive(0, true);
    EXPECT_EQ(set(50001, 70000), 0);
    EXPECT_EQ(record(50001).data.directData->regValue, 70000u);
    EXPECT_THAT(board.writes(), ElementsAre("AAWidth 5", "AAWidth 4294967295", "AAWidth 70000"));
    board.failWrite("AAWidth", -12);
    EXPECT_EQ(set(50001, 5), -12);
}

TEST_F(DirectRegTest, RefusedWritesDoNotReachTheBoard) {
    PSDirectReg& module = add<PSDirectReg>();
    EXPECT_EQ(set(50002, 1), -8010);
    EXPECT_EQ(load(50002, 1), -8010);  // without the check the record itself refuses
    master().setIsMedium(true);
    EXPECT_EQ(set(50001, 1, 1), -61);
    uint32_t value = 3;
    for (const int id : {50000, 50004}) EXPECT_EQ(module.getParamFromRs(id, &value, 0), -2070) << id;
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(Fg_getParameterWithType(handle(), static_cast<int>(50001 | 0x40000000), &value, 0, FG_PARAM_TYPE_AUTO),
              -2130);
    EXPECT_THAT(board.writes(), IsEmpty());
}

}  // namespace
