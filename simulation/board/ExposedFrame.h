#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

#include "simulation/board/Frame.h"
#include "simulation/board/PixelCurve.h"

namespace simulation {

/// How an exposure changes the shades of a scene: in proportion to the nominal one, up to white.
class ExposureCurve {
public:
    void set(std::chrono::nanoseconds exposure, std::chrono::nanoseconds nominal);
    [[nodiscard]] bool changesNothing() const { return mExposure == mNominal; }
    [[nodiscard]] uint8_t shade(uint8_t scene) const { return mCurve[scene]; }
    void apply(std::span<uint8_t> pixels) const { mCurve.apply(pixels); }

private:
    std::chrono::nanoseconds mExposure{0};
    std::chrono::nanoseconds mNominal{0};
    PixelCurve mCurve;
};

/// A frame after an exposure. Frame and curve are borrowed for the life of the object.
class ExposedFrame : public Frame {
public:
    ExposedFrame(Frame& scene, const ExposureCurve& curve) : mScene(scene), mCurve(curve) {}

    [[nodiscard]] PictureSize size() const override { return mScene.size(); }
    [[nodiscard]] const uint8_t* line(uint32_t y) override;

private:
    Frame& mScene;
    const ExposureCurve& mCurve;
    std::vector<uint8_t> mLine;
};

}  // namespace simulation
