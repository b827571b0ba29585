#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace simulation {

enum class ClockMode {
    realTime,  // frames come when the camera's schedule says so
    fast,      // frames come as fast as the machine can; their time stamps follow the schedule all the same
};

/// When the frames of a free-running camera come. The schedule is absolute, so that errors do not add up. Used by the
/// DMA thread; the mode may be read by any thread and changes only while no transfer runs.
class Clock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Nanoseconds = std::chrono::nanoseconds;

    /// Later than this, a frame is given up: a camera does not wait for a machine that is too slow for it.
    static constexpr Nanoseconds kLargestDelay = std::chrono::seconds(1);

    /// The schedule starts again after 146 years, which a fast transfer that selects few of its frames can reach.
    static constexpr Nanoseconds kLastStamp = Nanoseconds::max() / 2;

    /// Time stamps count from now on.
    void start();

    void setMode(ClockMode mode) { mMode = mode; }
    [[nodiscard]] ClockMode mode() const { return mMode; }

    /// A transfer starts: the next frame is the first one of the schedule after now.
    void align(Nanoseconds period);

    /// Moves on to the next frame. \return the number of frames given up on the way.
    uint64_t advance(Nanoseconds period);

    /// When the present frame is complete (real time).
    [[nodiscard]] TimePoint due() const { return mStart + mStamp; }

    /// The present frame's time stamp: from start() on.
    [[nodiscard]] Nanoseconds stamp() const { return mStamp; }

private:
    [[nodiscard]] Nanoseconds elapsed() const { return std::chrono::steady_clock::now() - mStart; }

    std::atomic<ClockMode> mMode{ClockMode::realTime};
    TimePoint mStart = std::chrono::steady_clock::now();
    Nanoseconds mStamp{0};
};

}  // namespace simulation
