#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "simulation/board/BoardTime.h"

namespace simulation {

enum class ClockMode : uint8_t {
    realTime,  // the board's time is the machine's
    fast,      // it jumps from frame to frame, as fast as the machine can
};

/// Where the board's time and the machine's meet. The mode may be read by any thread; it changes, and time starts, only
/// while no transfer runs.
class Clock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Time counts from now on.
    void start() { mStart = std::chrono::steady_clock::now(); }

    /// \param boardTime which goes on from here without a jump.
    void setMode(ClockMode mode, BoardTime boardTime) {
        mMode = mode;
        mStart = std::chrono::steady_clock::now() - boardTime;
    }
    [[nodiscard]] ClockMode mode() const { return mMode; }

    /// The board's time now, in real time.
    [[nodiscard]] BoardTime now() const { return std::chrono::steady_clock::now() - mStart; }

    /// The machine's time at a time of the board, in real time.
    [[nodiscard]] TimePoint pointOf(BoardTime time) const { return mStart + time; }

private:
    std::atomic<ClockMode> mMode{ClockMode::realTime};
    TimePoint mStart = std::chrono::steady_clock::now();
};

}  // namespace simulation
