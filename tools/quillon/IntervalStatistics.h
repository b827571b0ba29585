#pragma once

#include <cstdint>

namespace quillon::tool {

/// Distances of pictures by their time stamps, which are in nanoseconds.
class IntervalStatistics {
public:
    /// \param number of the picture, greater than the one before
    /// \param isNext whether no picture is missing between this one and the one before
    void add(uint64_t timeStamp, int64_t number, bool isNext);

    /// \return whether there are two pictures with different time stamps
    [[nodiscard]] bool isKnown() const { return isLater(mLast, mFirst); }
    /// \return pictures per second from the first to the last, those included that were not looked at
    [[nodiscard]] double rate() const;
    /// Of neighbours only, in milliseconds: mean, standard deviation, and the greatest distance from the mean.
    [[nodiscard]] double meanMs() const { return mMean * kMs; }
    [[nodiscard]] double jitterMs() const;
    [[nodiscard]] double worstMs() const;

private:
    static constexpr double kMs = 1e-6;

    /// Time stamps may begin at 0 again after the largest one.
    [[nodiscard]] static bool isLater(uint64_t time, uint64_t other) {
        return time != other && time - other <= UINT64_MAX / 2;
    }

    uint64_t mFirst = 0;
    uint64_t mLast = 0;
    int64_t mFirstNumber = 0;
    int64_t mLastNumber = 0;
    uint64_t mCount = 0;  ///< of the intervals between neighbours
    double mMean = 0;
    double mSquares = 0;  ///< sum of the squared distances from the mean
    double mShortest = 0;
    double mLongest = 0;
};

}  // namespace quillon::tool
