// Rules that every feature module of the applet keeps. Each is driven directly, without the registry's own checks.
#include <array>
#include <set>

#include "tests/core/GrabberTest.h"

namespace {

struct ModuleRow {
    const char* name;
    int updateOnBadPort, updateAllOnBadPort, updateOfUnknown;
};
// In the order of the registry.
constexpr std::array kModules{
    ModuleRow{"control",         -61, 0,   -1   },
    ModuleRow{"generator",       -61, -61, -2070},
    ModuleRow{"window",          -61, -61, -2070},
    ModuleRow{"camera port",     -61, -61, 0    },
    ModuleRow{"sensor readout",  -61, -61, -1   },
    ModuleRow{"area trigger",    -61, -61, 0    },
    ModuleRow{"CC signals",      -1,  -1,  -1   },
    ModuleRow{"knee table",      -61, -61, -2070},
    ModuleRow{"image selection", -61, -61, -1   },
};

class EveryModuleTest : public GrabberTest {
protected:
    EveryModuleTest() { EXPECT_EQ(open(), 0); }

    RSMaster& module(size_t index) { return *master().getHeader()->getModule(static_cast<int>(index)); }
    /// Expects that the module neither takes nor gives a value.
    void expectRefusal(RSMaster& asked, int id, unsigned port, int code) {
        SCOPED_TRACE(testing::Message() << id << " on port " << port);
        std::array<unsigned char, 2048> memory{};
        EXPECT_EQ(asked.setParamToRs(id, memory.data(), port), code);
        memory.fill(0x5A);
        EXPECT_EQ(asked.getParamFromRs(id, memory.data(), port), code);
        EXPECT_THAT(memory, Each(0x5A));
    }
};

TEST_F(EveryModuleTest, PortsThatDoNotExistAreRefusedAndTouchNothing) {
    for (size_t i = 0; i < kModules.size(); ++i) {
        SCOPED_TRACE(kModules[i].name);
        int parameters = 0;
        for (int index = 0; index < Fg_getNrOfParameter(handle()); ++index) {
            const int id = Fg_getParameterId(handle(), index);
            if (record(id).mParent != &module(i)) continue;
            ++parameters;
            for (const unsigned port : {2u, 2147483647u, 4294967295u}) {
                expectRefusal(module(i), id, port, -61);
                EXPECT_EQ(module(i).updateParameter(port, id), kModules[i].updateOnBadPort) << id;
            }
        }
        EXPECT_GT(parameters, 0);
        EXPECT_EQ(module(i).updateAllParameters(2), kModules[i].updateAllOnBadPort);
        EXPECT_EQ(module(i).addStandardPS(2, true), -61);
    }
    EXPECT_EQ(master().getHeader()->getModule(static_cast<int>(kModules.size())), nullptr);
    EXPECT_THAT(board.events, IsEmpty());
}

TEST_F(EveryModuleTest, IdentifiersOfNobodyAreRefusedAndTouchNothing) {
    for (size_t i = 0; i < kModules.size(); ++i) {
        SCOPED_TRACE(kModules[i].name);
        for (const int id : {0, -1, 101, 701, 5051, 13999, 14005, 14021, 25112, 30098, 30114}) {
            expectRefusal(module(i), id, 0, -2070);
            EXPECT_EQ(module(i).updateParameter(0, id), kModules[i].updateOfUnknown) << id;
        }
    }
    EXPECT_THAT(board.events, IsEmpty());
}

TEST_F(EveryModuleTest, ADesignWithoutAnyOneRegisterOpensAndSaysSo) {
    const std::set<std::string> optional{"AABufferStatus",
                                         "AAFreqCountCtrl",
                                         "AAFreqCount",
                                         "AATrgArea_SwTrgQueueFillLevel",
                                         "AATrgArea_SwTrgQueueTriggers",
                                         "AATrgArea_SwTrgQueueEnable",
                                         "AATrgArea_FlashLow",
                                         "AAEnable_ProgFlashDuration"};
    const auto registers = board.registers;
    for (const auto& missing : registers) {
        SCOPED_TRACE(missing.name);
        free();
        board.registers = registers;
        board.removeRegister(missing.name);
        EXPECT_EQ(open(), 0);
        EXPECT_NE(Fg_getParameterInfo(handle(), 0), nullptr);
        EXPECT_EQ(master().getHeader()->getRegisterInitSuccess(), optional.contains(missing.name) ? 0 : -7040);
    }
}

}  // namespace
