#include "StandardApplets/grabber_basis/RSFx4/TriggerConversions.h"

#include <algorithm>
#include <cmath>

#include "StandardApplets/grabber_basis/Truncation.h"

namespace {

constexpr double kUsPerSecond = 1000000.0;
constexpr unsigned kFullWidthBits = 32;
constexpr double kHalf = 0.5;
constexpr double kHalfMicrosecond = 0.5;

uint32_t roundedLessOne(double units) { return truncateTo<uint32_t>(units + kHalf) - 1; }

/// \return the count as the signed number that it is on the way back
double signedCount(uint32_t count) { return static_cast<int32_t>(count); }

/// \return the number of units of a count that is stored less one
double unitsOf(uint32_t count) { return signedCount(count) + 1; }

}  // namespace

uint32_t frameRateToCount(double framesPerSecond, double timeBaseUs) {
    return roundedLessOne(1 / framesPerSecond * kUsPerSecond / timeBaseUs);
}

double countToFrameRate(uint32_t count, double timeBaseUs) { return 1 / (unitsOf(count) * timeBaseUs) * kUsPerSecond; }

uint32_t delayToCount(double delayUs, double timeBaseUs) {
    return truncateTo<uint32_t>((delayUs + kHalfMicrosecond) / timeBaseUs);
}

double countToDelay(uint32_t count, double timeBaseUs) { return signedCount(count) * timeBaseUs; }

uint32_t durationToCount(double durationUs, double timeBaseUs) { return roundedLessOne(durationUs / timeBaseUs); }

double countToDuration(uint32_t count, double timeBaseUs) { return unitsOf(count) * timeBaseUs; }

uint32_t countToExposureUs(uint32_t count, double timeBaseUs) {
    return truncateTo<uint32_t>(countToDuration(count, timeBaseUs));
}

uint32_t durationToHighCount(double durationUs, double timeBaseUs) {
    return truncateTo<uint32_t>(durationUs / timeBaseUs) - 1;
}

uint32_t timeBaseToCount(double timeBaseUs, double clockMHz) { return roundedLessOne(timeBaseUs * clockMHz); }

double countToTimeBase(uint32_t count, double clockMHz) { return unitsOf(count) / clockMHz; }

uint32_t largestCount(unsigned width) { return width < kFullWidthBits ? (uint32_t{1} << width) - 1 : UINT32_MAX; }

double numberOfCounts(unsigned width) { return std::ldexp(1.0, static_cast<int>(width)); }

double smallestTimeBaseForFrameRate(double framesPerSecond, unsigned width, double clockMHz) {
    return kUsPerSecond / (framesPerSecond * numberOfCounts(width)) + countToTimeBase(1, clockMHz);
}

double smallestTimeBaseForDelay(double delayUs, unsigned width, double clockMHz) {
    const double largest = numberOfCounts(width) - 1;
    const double exact = largest > 0 ? delayUs / largest : 0;
    return exact + countToTimeBase(1, clockMHz);
}

double smallestTimeBaseForDuration(double durationUs, unsigned width, double clockMHz) {
    return durationUs / numberOfCounts(width) + countToTimeBase(1, clockMHz);
}

double smallestFrameRate(unsigned width, double timeBaseUs) {
    return kUsPerSecond / (numberOfCounts(width) * timeBaseUs);
}

double largestFrameRate(double exposureUs, double timeBaseUs) {
    const double margin = 2 * timeBaseUs;
    return std::min(kUsPerSecond / (exposureUs + margin), kUsPerSecond / margin);
}

int32_t smallestExposureUs(double timeBaseUs) {
    return std::max(truncateTo<int32_t>(2 * timeBaseUs), truncateTo<int32_t>(timeBaseUs));
}

uint32_t largestExposureUs(double framesPerSecond, unsigned width, double timeBaseUs) {
    const auto registerRange = truncateTo<uint32_t>(numberOfCounts(width) * timeBaseUs);
    const auto frameRateBound = truncateTo<uint32_t>(kUsPerSecond / framesPerSecond - 2 * timeBaseUs);
    return std::min(registerRange, frameRateBound);
}
