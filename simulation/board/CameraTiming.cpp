#include "simulation/board/CameraTiming.h"

namespace simulation {

void Cadence::set(std::optional<BoardTime> period, BoardTime now) {
    if (period == mPeriod) return;
    if (!mPeriod || !period || mLast + *period < now) mLast = now;
    mPeriod = period;
}

MaybeTime Cadence::next() const { return mPeriod ? MaybeTime(mLast + *mPeriod) : std::nullopt; }

void Cadence::skipTo(BoardTime time) {
    if (mPeriod && time > mLast) mLast += (time - mLast) / *mPeriod * *mPeriod;
}

void CameraTiming::apply(const Settings& settings, BoardTime now) {
    mSettings = settings;
    mFree.set(settings.isTriggered ? std::nullopt : std::optional(settings.period), now);
    if (!settings.isTriggered) mExposureStart.reset();
}

void CameraTiming::trigger(bool isActive, BoardTime now, FrameCount& count) {
    if (isActive == mIsActive) return;
    mIsActive = isActive;
    if (!mSettings.isTriggered) return;
    if (isActive) {
        mExposureStart = now;
    } else if (mExposureStart) {
        ++count.ordinal;
        if (mReadoutEnd) {
            ++count.missed;
        } else {
            mReadoutEnd = now + mSettings.readout;
            mRead = {*mReadoutEnd, count.ordinal, now - *mExposureStart};
        }
        mExposureStart.reset();
    }
}

std::optional<CompletedFrame> CameraTiming::step(BoardTime now, FrameCount& count) {
    if (mReadoutEnd && *mReadoutEnd <= now) {
        mReadoutEnd.reset();
        return mRead;
    }
    const MaybeTime free = mFree.next();
    if (!free || *free > now) return std::nullopt;
    mFree.step();
    return CompletedFrame{*free, ++count.ordinal, kAsShown};
}

void CameraTiming::shift(BoardTime by) {
    mFree.shift(by);
    if (mExposureStart) *mExposureStart += by;
    if (mReadoutEnd) *mReadoutEnd += by;
    mRead.time += by;
}

}  // namespace simulation
