#include <array>

#include "tavo_hal/src/hw/tavo_hw_loader.h"
#include "tests/core/GrabberTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> gCalls;

/// Notes a call with its numbers; memories are told apart by their address alone.
template <class... Numbers>
void noteCall(const char* name, Numbers... numbers) {
    std::string line = name;
    ((line += " " + std::to_string(numbers)), ...);
    gCalls.push_back(line);
}

int number(const void* pointer) { return pointer == FakeBoard::memory() ? 77 : pointer == FakeBoard::device() ? 1 : 0; }

/// Puts functions of its own into the operation table, for the operations that the fake board does not have.
class BoardTest : public ModuleTest {
protected:
    BoardTest() {
        gCalls.clear();
        m_PTavoGetVirtualUserBuffer = [](FgDevice* device, size_t size, frameindex_t count) {
            noteCall("make", number(device), size, count);
            return FakeBoard::memory();
        };
        m_PTavoFreeVirtualUserBuffer = [](FgDevice* device, dma_mem* memory) {
            noteCall("free", number(device), number(memory));
            return -11;
        };
        m_PTavoAddUserBuffer = [](FgDevice*, dma_mem* memory, void*, size_t size, frameindex_t index) {
            noteCall("add", number(memory), size, index);
            return -12;
        };
        m_PTavoDelUserBuffer = [](FgDevice*, dma_mem* memory, frameindex_t index) {
            noteCall("remove", number(memory), index);
            return -13;
        };
        m_PTavoGetNrOfSubbuffer = [](FgDevice*, dma_mem* memory) {
            noteCall("count", number(memory));
            return 8;
        };
        m_PTavoGetBufferSize = [](FgDevice*, dma_mem* memory) {
            noteCall("size", number(memory));
            return size_t{4096};
        };
        m_PTavoDmaStartWrite = [](FgDevice*, int port, frameindex_t first, size_t length, dma_mem* memory, int mode,
                                  frameindex_t transfers, int reserved, int timeout) {
            noteCall("write", port, first, length, number(memory), mode, transfers, reserved, timeout);
            return 9;
        };
        m_PTavoGetDmaTimeStamp = [](FgDevice*, dma_mem* memory, frameindex_t buffer) {
            noteCall("stamp", number(memory), buffer);
            return 5;
        };
        m_PTavoGetDmaTimeStampLong = [](FgDevice*, dma_mem* memory, frameindex_t buffer) {
            noteCall("long stamp", number(memory), buffer);
            return uint64_t{0x123456789ABCDEF0};
        };
        m_PTavoDataQueueReadBufferLong = [](FgDevice*, int queue, uint32_t*, int count, int timeout) {
            noteCall("queue", queue, count, timeout);
            return -14;
        };
        m_PTavoDataQueueClear = [](FgDevice*, int queue) {
            noteCall("clear", queue);
            return -15;
        };
    }

    dma_mem* const mMemory = FakeBoard::memory();
};

TEST_F(BoardTest, NullDeviceIsRefusedByEveryOperation) {
    Fg_FabrixBoard without(nullptr, nullptr, nullptr);
    EXPECT_EQ(without.configureFPGA(), -6);
    EXPECT_EQ(without.writeRegister(1, 1), -6);
    EXPECT_EQ(without.readRegister(1), 18446744073709551615U);
    EXPECT_EQ(without.dmaVirtualStopTransferExt(0), -2042);
    EXPECT_EQ(without.fbSetVirtualUserBuffer(10, 1, nullptr), nullptr);
    EXPECT_THAT(board.events, IsEmpty());
    EXPECT_THAT(gCalls, IsEmpty());
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

TEST_F(BoardTest, OperationsForwardTheirArgumentsInOrder) {
    Fg_FabrixBoard& access = *mFabrixBoard;
    uint32_t words[4] = {};
    char buffer[4] = {};
    EXPECT_EQ(access.fbSetVirtualUserBuffer(1234, 6, nullptr), mMemory);
    EXPECT_EQ(access.fbFreeVirtualUserBuffer(mMemory), -11);
    EXPECT_EQ(access.fbAddVirtualUserBuffer(mMemory, buffer, 4, 2), -12);
    EXPECT_EQ(access.fbDeleteVirtualUserBuffer(mMemory, 3), -13);
    EXPECT_EQ(access.fbGetNrOfSubBuffer(mMemory), 8);
    EXPECT_EQ(access.fbGetBufferSize(mMemory), 4096U);
    EXPECT_EQ(access.dmaVirtualWriteExtAsync(1, 2, 3, mMemory, 4, 5, 6), 9);
    EXPECT_EQ(access.getDMATimeStamp(mMemory, 4), 5);
    EXPECT_EQ(access.getDMATimeStampLong(mMemory, 4), 0x123456789ABCDEF0U);
    EXPECT_EQ(access.userInterruptReadBuffer(words, nullptr, 7), -14);
    EXPECT_EQ(access.userInterruptReadBufferClear(nullptr), -15);
    EXPECT_THAT(gCalls,
                ElementsAre("make 1 1234 6", "free 1 77", "add 77 4 2", "remove 77 3", "count 77", "size 77",
                            "write 1 2 3 77 4 5 0 6", "stamp 77 4", "long stamp 77 4", "queue 0 4 7", "clear 0"));
    access.dmaVirtualReadExtAsync(1, 0, mMemory, 16, 5, 20);
    board.testResult = 3;
    EXPECT_EQ(access.dmaTestVirtualBufferStatus(1, mMemory), 3);
    board.waitResult = -9;
    EXPECT_EQ(access.dmaVirtualWaitForBuffer(1, 4, mMemory, 2), -9);
    EXPECT_EQ(access.getDMATag(mMemory, 6), 1006);
    EXPECT_EQ(access.getDMALength(mMemory, 6), 600U);
    board.cameraStatus[2] = -5;
    EXPECT_EQ(access.getCameraStatusExtended(2), -5);
    EXPECT_THAT(board.events, ElementsAre("start path=1 mode=16 count=5 timeout=20", "test path=1",
                                          "wait path=1 picture=4 timeout=2", "tag 6", "length 6", "status 2"));
}

}  // namespace
