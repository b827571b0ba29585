#pragma once

#include <cstdint>

#include "simulation/board/Picture.h"

namespace simulation {

/// A frame as a stage of the pipeline hands it on: line by line, so that only lines that the window shows are made.
class Frame {
public:
    Frame() = default;
    virtual ~Frame() = default;
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    [[nodiscard]] virtual PictureSize size() const = 0;

    /// Line \p y, below size().height; borrowed until the next call.
    [[nodiscard]] virtual const uint8_t* line(uint32_t y) = 0;
};

/// A picture that is there already. It is borrowed for the life of the object.
class PictureFrame : public Frame {
public:
    explicit PictureFrame(const Picture& picture) : mPicture(picture) {}

    [[nodiscard]] PictureSize size() const override { return mPicture.size; }
    [[nodiscard]] const uint8_t* line(uint32_t y) override { return mPicture.line(y); }

private:
    const Picture& mPicture;
};

}  // namespace simulation
