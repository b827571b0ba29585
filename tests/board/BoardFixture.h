#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "simulation/board/Board.h"

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A configured board in fast mode with a small scene, and a host that knows its registers.
class BoardFixture : public testing::Test {
protected:
    static constexpr int kAreaWidth = 1, kAreaHeight = 2, kGlobalWork = 3, kReset = 4, kCounterControl = 5,
                         kCounter = 6;

    BoardFixture() {
        EXPECT_EQ(mBoard.setScene({64, 32}).code, 0);
        EXPECT_EQ(mBoard.setMode(simulation::ClockMode::fast).code, 0);
        EXPECT_EQ(mBoard.configure(&mDesign), 0);
        write(kAreaWidth, 3);    // 64 pixels
        write(kAreaHeight, 31);  // 32 lines
    }

    void write(int handle, uint64_t value) { EXPECT_EQ(mBoard.writeRegister(handle, value), 0); }

    uint64_t read(int handle) {
        uint64_t value = 0;
        EXPECT_EQ(mBoard.readRegister(handle, &value), 0);
        return value;
    }

    /// Buffers of \p size bytes each.
    simulation::BufferSet& addBuffers(int32_t count, size_t size = 64 * 32) {
        mMemory.assign(static_cast<size_t>(count), std::vector<uint8_t>(size, 0xEE));
        mBuffers = mBoard.createBuffers(size * static_cast<size_t>(count), count);
        for (int32_t i = 0; i < count; ++i) EXPECT_EQ(mBuffers->add(i, mMemory[static_cast<size_t>(i)]), 0);
        return *mBuffers;
    }

    int start(int32_t transfers, int mode = 16) { return mBoard.startDma({0, 0, 0, mode, transfers}, mBuffers).code; }

    int startFlowing(int32_t transfers, int mode = 16) {
        const int code = start(transfers, mode);
        write(kGlobalWork, 1);
        return code;
    }

    const simulation::Design mDesign{
        2626,
        {{"AAAreaWidth", 12, 1, 0},
          {"AAAreaHeight", 16, 1, 0},
          {"AAglobal_work", 1, 1, 0},
          {"AAReset", 1, 1, 0},
          {"AAFreqCountCtrl", 2, 1, 0},
          {"AAFreqCount", 32, 2, 0}},
        {}
    };
    std::vector<std::vector<uint8_t>> mMemory;
    simulation::BufferSet* mBuffers = nullptr;
    simulation::Board mBoard;  // last: its transfer ends before the memory goes
};

/// Seconds since the object was made.
class Stopwatch {
public:
    [[nodiscard]] double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - mStart).count();
    }

private:
    const std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};
