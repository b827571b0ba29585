#include "tests/core/GrabberTest.h"

namespace {

using BoardTest = ModuleTest;

TEST_F(BoardTest, NullDeviceIsRefusedByEveryOperation) {
    Fg_FabrixBoard without(nullptr, nullptr, nullptr);
    EXPECT_EQ(without.configureFPGA(), -6);
    EXPECT_EQ(without.writeRegister(1, 1), -6);
    EXPECT_EQ(without.readRegister(1), 18446744073709551615U);
    EXPECT_EQ(without.dmaVirtualStopTransferExt(0), -2042);
    EXPECT_EQ(without.fbSetVirtualUserBuffer(10, 1, nullptr), nullptr);
    EXPECT_THAT(board.events, IsEmpty());
}

TEST_F(BoardTest, StopFoldsEveryRefusalIntoOneCode) {
    for (const auto& [library, expected] : {
             std::pair{-1,    -2042},
             {-2042, -2042},
             {-9999, -2042},
             {0,     0    },
             {3,     0    }
    }) {
        board.stopResult = library;
        EXPECT_EQ(mFabrixBoard->dmaVirtualStopTransferExt(1), expected) << library;
    }
    EXPECT_THAT(board.eventsOf("stop "), ElementsAre("path=1", "path=1", "path=1", "path=1", "path=1"));
}

}  // namespace
