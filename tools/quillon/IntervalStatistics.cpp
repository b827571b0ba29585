#include "IntervalStatistics.h"

#include <algorithm>
#include <cmath>

namespace quillon::tool {

void IntervalStatistics::add(uint64_t timeStamp, int64_t number, bool isNext) {
    if (mLastNumber == 0) {
        mFirst = timeStamp;
        mFirstNumber = number;
    } else if (isNext && !isLater(mLast, timeStamp)) {
        const auto interval = static_cast<double>(timeStamp - mLast);
        mShortest = mCount == 0 ? interval : std::min(mShortest, interval);
        mLongest = std::max(mLongest, interval);
        // Mean and squares are carried on in a way that keeps small differences of large numbers.
        ++mCount;
        const double distance = interval - mMean;
        mMean += distance / static_cast<double>(mCount);
        mSquares += distance * (interval - mMean);
    }
    mLast = timeStamp;
    mLastNumber = number;
}

double IntervalStatistics::rate() const {
    if (!isKnown()) return 0;
    return static_cast<double>(mLastNumber - mFirstNumber) / (static_cast<double>(mLast - mFirst) * 1e-9);
}

double IntervalStatistics::jitterMs() const {
    return mCount == 0 ? 0 : std::sqrt(mSquares / static_cast<double>(mCount)) * kMs;
}

double IntervalStatistics::worstMs() const { return std::max(mLongest - mMean, mMean - mShortest) * kMs; }

}  // namespace quillon::tool
