#include "simulation/board/FrequencyCounter.h"

namespace simulation {

namespace {

constexpr uint64_t kControlClear = 1;
constexpr uint64_t kControlCount = 2;

}  // namespace

void FrequencyCounter::control(uint64_t value, TimePoint now) {
    const std::lock_guard lock(mMutex);
    mTicks = value == kControlClear ? 0 : ticks(now);
    mCounts = value == kControlCount;
    mStart = now;
}

uint64_t FrequencyCounter::count(TimePoint now) const {
    const std::lock_guard lock(mMutex);
    return ticks(now) & 0xFFFFFFFFu;
}

uint64_t FrequencyCounter::ticks(TimePoint now) const {
    if (!mCounts) return mTicks;
    const auto elapsed = std::chrono::duration_cast<std::chrono::nanoseconds>(now - mStart).count();
    return mTicks + static_cast<uint64_t>(elapsed) / 16;  // 62.5 MHz: one tick in 16 ns
}

}  // namespace simulation
