#pragma once

#include <cstdint>

#include "simulation/board/BoardTime.h"

namespace simulation {

/// The exposure of a frame whose scene is shown as it is.
constexpr BoardTime kAsShown{-1};

/// A frame that has been read out.
struct CompletedFrame {
    BoardTime time{0};     // when its last pixel came
    uint64_t ordinal = 0;  // counts every frame and every trigger of the camera, missed ones as well
    BoardTime exposure = kAsShown;
};

/// How many frames and triggers there have been.
struct FrameCount {
    uint64_t ordinal = 0;
    uint64_t missed = 0;
};

/// Frames at equal distances.
class Cadence {
public:
    /// Starts at \p now, or goes on with another period, or ends.
    void set(std::optional<BoardTime> period, BoardTime now);

    [[nodiscard]] MaybeTime next() const;
    void step() { mLast += mPeriod.value_or(BoardTime(0)); }

    /// Leaves out the frames up to \p time.
    void skipTo(BoardTime time);
    void shift(BoardTime by) { mLast += by; }

private:
    std::optional<BoardTime> mPeriod;
    BoardTime mLast{0};
};

/// When the camera's frames come. Free, they come at its own rate. Triggered, the camera exposes while its trigger line
/// is active and reads out afterwards; the next exposure may begin meanwhile. When it ends before the readout has,
/// its frame is lost: it is missed. It is told the time and is a plain value.
class CameraTiming {
public:
    struct Settings {
        bool isTriggered = false;
        BoardTime period{0};  // of the free camera
        BoardTime readout{0};
    };

    void apply(const Settings& settings, BoardTime now);
    [[nodiscard]] const Settings& settings() const { return mSettings; }

    /// The level of the trigger line as the camera sees it.
    void trigger(bool isActive, BoardTime now, FrameCount& count);

    [[nodiscard]] MaybeTime next() const { return earlier(mReadoutEnd, mFree.next()); }

    /// \return the frame that is complete now, if one is.
    [[nodiscard]] std::optional<CompletedFrame> step(BoardTime now, FrameCount& count);

    void skipTo(BoardTime time) { mFree.skipTo(time); }
    void shift(BoardTime by);

private:
    Settings mSettings;
    Cadence mFree;
    bool mIsActive = false;
    MaybeTime mExposureStart;
    MaybeTime mReadoutEnd;
    CompletedFrame mRead;  // comes at mReadoutEnd
};

}  // namespace simulation
