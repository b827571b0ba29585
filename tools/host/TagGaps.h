#pragma once

#include <cstdint>

#include "host/Acquisition.h"

namespace quillon::host {

/// Finds the camera frames that reached no buffer: the board's tags count them, the picture numbers do not.
class TagGaps {
public:
    /// Tags are the positive half of an int, because negative ones are codes: after the last one they begin at 0 again.
    static constexpr uint32_t kTagMask = 0x7FFF'FFFF;

    /// From the picture before to this one.
    struct Step {
        uint64_t dropped = 0;  ///< pictures that should have come between them
        bool isNext = false;   ///< whether nothing came between them, neither a picture nor a camera frame too many
    };

    /// \param framesPerPicture camera frames of which the image selector delivers one, at least 1
    explicit TagGaps(uint32_t framesPerPicture) : mFramesPerPicture(framesPerPicture) {}

    /// \param frame a later one than the last; the first of all has nothing before it
    Step take(const Frame& frame) {
        Step step;
        if (mNumber != 0) {
            const uint32_t framesPassed = (frame.tag - mTag) & kTagMask;
            const uint32_t due = framesPassed / mFramesPerPicture;
            const auto passed = static_cast<uint32_t>(frame.number - mNumber);
            if (due > passed) step.dropped = due - passed;
            step.isNext = passed == 1 && framesPassed == mFramesPerPicture;
        }
        mNumber = frame.number;
        mTag = frame.tag;
        return step;
    }

private:
    uint32_t mFramesPerPicture;
    frameindex_t mNumber = 0;  ///< of the last picture, 0 before the first
    uint32_t mTag = 0;         ///< of the last picture
};

}  // namespace quillon::host
