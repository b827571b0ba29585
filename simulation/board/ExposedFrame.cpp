#include "simulation/board/ExposedFrame.h"

#include <algorithm>
#include <array>

namespace simulation {

void ExposureCurve::set(std::chrono::nanoseconds exposure, std::chrono::nanoseconds nominal) {
    if (exposure == mExposure && nominal == mNominal) return;
    mExposure = exposure;
    mNominal = nominal;
    // Beyond this even the darkest shade above black is white.
    constexpr int64_t kWhite = 255;
    const int64_t light = std::min(exposure, nominal * kWhite).count();
    std::array<uint8_t, PixelCurve::kShades> shades{};
    for (size_t scene = 0; scene < shades.size(); ++scene) {
        const int64_t shade = (static_cast<int64_t>(scene) * light + nominal.count() / 2) / nominal.count();
        shades[scene] = static_cast<uint8_t>(std::min(shade, kWhite));
    }
    mCurve = PixelCurve(shades);
}

const uint8_t* ExposedFrame::line(uint32_t y) {
    const uint8_t* const scene = mScene.line(y);
    mLine.assign(scene, scene + size().width);
    mCurve.apply(mLine);
    return mLine.data();
}

}  // namespace simulation
