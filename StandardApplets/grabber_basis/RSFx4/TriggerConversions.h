/// \file
/// Arithmetic of the area trigger, with no board in sight: user units to register counts and back, and the limits
/// that follow from register widths and from other values.
///
/// Every time of the trigger counts in units of one time base, which is itself a number of board clock cycles. Counts
/// are 32 bits wide and wrap; on the way back they are signed. Rounding adds a half and cuts toward zero. Every
/// argument gives a defined result: a time base of 0 or a frame rate of infinity may come out of a file.
#pragma once

#include <cstdint>

/// \name Values and counts
/// @{
/// Frame periods are stored less one.
[[nodiscard]] uint32_t frameRateToCount(double framesPerSecond, double timeBaseUs);
[[nodiscard]] double countToFrameRate(uint32_t count, double timeBaseUs);
/// Delays are stored as they are, cut after half a microsecond has been added.
[[nodiscard]] uint32_t delayToCount(double delayUs, double timeBaseUs);
[[nodiscard]] double countToDelay(uint32_t count, double timeBaseUs);
/// Exposure and flash duration are stored less one.
[[nodiscard]] uint32_t durationToCount(double durationUs, double timeBaseUs);
[[nodiscard]] double countToDuration(uint32_t count, double timeBaseUs);
/// An exposure is a whole number of microseconds: the duration, cut.
[[nodiscard]] uint32_t countToExposureUs(uint32_t count, double timeBaseUs);
/// The high phase of a triggered exposure: cut where durationToCount() rounds, so that the two may differ by one.
[[nodiscard]] uint32_t durationToHighCount(double durationUs, double timeBaseUs);
/// Clock cycles of a time base, stored less one.
[[nodiscard]] uint32_t timeBaseToCount(double timeBaseUs, double clockMHz);
[[nodiscard]] double countToTimeBase(uint32_t count, double clockMHz);
/// @}

/// \name What a register of \p width bits can hold
/// @{
/// \return the largest count; that of 32 bits for a wider register
[[nodiscard]] uint32_t largestCount(unsigned width);
/// \return the number of counts, 2^width
[[nodiscard]] double numberOfCounts(unsigned width);
/// @}

/// \name Smallest time base (us) with which a value still fits its register, plus the time base of count 1
/// A delay register without bits does not bound the time base.
/// @{
[[nodiscard]] double smallestTimeBaseForFrameRate(double framesPerSecond, unsigned width, double clockMHz);
[[nodiscard]] double smallestTimeBaseForDelay(double delayUs, unsigned width, double clockMHz);
[[nodiscard]] double smallestTimeBaseForDuration(double durationUs, unsigned width, double clockMHz);
/// @}

/// \name Frame rate and exposure bound each other, with a margin of two time bases
/// @{
[[nodiscard]] double smallestFrameRate(unsigned width, double timeBaseUs);
[[nodiscard]] double largestFrameRate(double exposureUs, double timeBaseUs);
[[nodiscard]] int32_t smallestExposureUs(double timeBaseUs);
/// The smaller as unsigned numbers: when not even a negative exposure of a whole microsecond would fit the frame
/// rate, the register alone bounds.
[[nodiscard]] uint32_t largestExposureUs(double framesPerSecond, unsigned width, double timeBaseUs);
/// @}
