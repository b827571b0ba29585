#include "simulation/board/KneeTable.h"

#include <algorithm>

namespace simulation {

namespace {

constexpr uint32_t kWhite = PixelCurve::kShades - 1;

// No design has wider fields; of a wider register the low bits count.
constexpr uint64_t kValueMask = 0x1FFFF;
constexpr uint64_t kAddressMask = KneeTable::kSegments - 1;
constexpr uint64_t kGrayTable = 1;

}  // namespace

void KneeTable::reset() {
    constexpr uint32_t kStep = kFullScale / kSegments;
    const std::lock_guard lock(mMutex);
    for (uint32_t i = 0; i < kSegments; ++i) mSegments[i] = {i * kStep, (i + 1) * kStep};
    mHasChanged = true;
}

void KneeTable::load(const Values& values) {
    const auto [start, end, address, tables] = values;
    if ((tables & kGrayTable) == 0) return;
    const std::lock_guard lock(mMutex);
    mSegments[address & kAddressMask] = {static_cast<uint32_t>(start & kValueMask),
                                         static_cast<uint32_t>(end & kValueMask)};
    mHasChanged = true;
}

const PixelCurve& KneeTable::curve() {
    const std::lock_guard lock(mMutex);
    if (mHasChanged) mCurve = makeCurve();
    mHasChanged = false;
    return mCurve;
}

PixelCurve KneeTable::makeCurve() const {
    std::array<uint8_t, PixelCurve::kShades> shades{};
    for (uint32_t shade = 0; shade <= kWhite; ++shade) {
        // Shade p lies at place p * 1024 / 255 of the segments, in whole steps of 1/255 segment.
        const uint32_t place = shade * kSegments;
        const uint32_t index = std::min(place / kWhite, kSegments - 1);
        const uint32_t step = place - index * kWhite;
        const Segment& segment = mSegments[index];
        // 255 times the value there. As full scale, 65536, is shade 255, dividing it by 65536 gives the shade: there is
        // one rounding only, and the straight line gives back every shade.
        const uint32_t value = segment.start * (kWhite - step) + segment.end * step;
        shades[shade] = static_cast<uint8_t>(std::min((value + kFullScale / 2) / kFullScale, kWhite));
    }
    return PixelCurve(shades);
}

}  // namespace simulation
