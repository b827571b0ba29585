#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

namespace simulation {

/// The counter that measures the board's 62.5 MHz clock: it counts clock ticks from the control value 2 to the value
/// 0 and wraps at 32 bits. It follows real time in every mode of the board, because the host measures with its own
/// clock.
class FrequencyCounter {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// The host writes the control register: 1 clears, 2 counts, 0 stops and keeps the count.
    void control(uint64_t value, TimePoint now);

    [[nodiscard]] uint64_t count(TimePoint now) const;

private:
    [[nodiscard]] uint64_t ticks(TimePoint now) const;

    mutable std::mutex mMutex;
    bool mCounts = false;  // guarded by mMutex
    uint64_t mTicks = 0;   // guarded by mMutex; up to mStart
    TimePoint mStart;      // guarded by mMutex
};

}  // namespace simulation
