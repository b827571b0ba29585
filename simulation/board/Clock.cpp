#include "simulation/board/Clock.h"

namespace simulation {

void Clock::start() {
    mStart = std::chrono::steady_clock::now();
    mStamp = Nanoseconds(0);
}

void Clock::align(Nanoseconds period) {
    if (mMode == ClockMode::fast) return;
    const Nanoseconds now = elapsed();
    // A fast transfer has run ahead of real time: its time counts.
    if (mStamp > now + period) mStart -= mStamp - now;
    mStamp = elapsed() / period * period;
}

uint64_t Clock::advance(Nanoseconds period) {
    if (mStamp > kLastStamp - period) mStamp = Nanoseconds(0);
    mStamp += period;
    if (mMode == ClockMode::fast) return 0;
    const Nanoseconds late = elapsed() - mStamp;
    if (late <= kLargestDelay) return 0;
    const auto givenUp = late / period;
    mStamp += givenUp * period;
    return static_cast<uint64_t>(givenUp);
}

}  // namespace simulation
