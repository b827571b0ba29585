#pragma once

#include <memory>
#include <string>

#include "simulation/board/PictureSource.h"

namespace simulation {

/// The built-in scene: a still background with its own pattern in each corner, a ball that flies across it, and the
/// frame number in digits. Frame n is the same in every run.
class Scene : public PictureSource {
public:
    static constexpr uint32_t kSmallestSide = 16;

    /// \return null with \p why for a size that no sensor has.
    [[nodiscard]] static std::unique_ptr<Scene> create(PictureSize size, std::string& why);

    [[nodiscard]] PictureSize size() const override { return mBackground.size; }
    [[nodiscard]] const Picture& frame(uint64_t number) override;

private:
    /// A part of the picture that differs from the background.
    struct Area {
        uint32_t x = 0;
        uint32_t y = 0;
        PictureSize size;
    };

    explicit Scene(Picture background);

    void restore(const Area& area);
    [[nodiscard]] Area drawBall(uint64_t number);
    [[nodiscard]] Area drawNumber(uint64_t number);

    const Picture mBackground;
    const Picture mBallPicture;  ///< black about the ball
    Picture mFrame;
    // Only these areas are redrawn, so that a frame costs far less than its number of pixels.
    Area mBall;
    Area mNumber;
};

}  // namespace simulation
