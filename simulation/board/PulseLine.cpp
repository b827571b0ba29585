#include "simulation/board/PulseLine.h"

namespace simulation {

void PulseLine::stop() {
    mPeriod.reset();
    mStart.reset();
    mEnd.reset();
}

/// A start that a shorter delay has put into the past takes place now.
void PulseLine::schedule(BoardTime trigger, BoardTime now) {
    mStart = std::max(trigger + mShape.delay, now);
    mTrigger = *mStart - mShape.delay;
}

void PulseLine::setShape(const PulseShape& shape, BoardTime now) {
    if (shape == mShape) return;
    mShape = shape;
    if (mStart) schedule(mTrigger, now);
}

void PulseLine::trigger(BoardTime now) {
    if (!mStart && !isExhausted()) schedule(now, now);
}

void PulseLine::repeat(BoardTime period, BoardTime now) {
    mPeriod = period;
    mHasBegun = false;
    trigger(now);
}

void PulseLine::setPeriod(BoardTime period, BoardTime now) {
    if (!mPeriod || *mPeriod == period) return;
    mPeriod = period;
    // Before the first pulse there is nothing to count the new period from.
    if (!mStart || !mHasBegun) return;
    // A counter that is beyond the new end already starts again.
    const bool isOver = mLastTrigger + period + mShape.delay < now;
    schedule(isOver ? now + period : mLastTrigger + period, now);
}

void PulseLine::step(BoardTime now) {
    if (isExhausted()) mStart.reset();
    if (mStart && *mStart <= now) begin(*mStart, now);
    if (mEnd && *mEnd <= now) mEnd.reset();
}

void PulseLine::begin(BoardTime start, BoardTime now) {
    mEnd = start + mShape.width;
    mStart.reset();
    mHasBegun = true;
    mLastTrigger = mTrigger;
    ++mPulses;
    if (mLeft) --*mLeft;
    if (mPeriod && !isExhausted()) schedule(mTrigger + *mPeriod, now);
}

void PulseLine::skip(uint64_t pulses, BoardTime by) {
    mPulses += pulses;
    if (mLeft) *mLeft -= std::min(*mLeft, pulses);
    mTrigger += by;
    mLastTrigger += by;
    if (mStart) *mStart += by;
    if (mEnd) *mEnd += by;
}

}  // namespace simulation
