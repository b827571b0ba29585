#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "PictureFiles.h"
#include "StopSignals.h"
#include "host/Acquisition.h"

namespace quillon::tool {

/// What a recording is to do.
struct RecordingPlan {
    frameindex_t pictures = 0;
    int timeoutSeconds = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t framesPerPicture = 1;        ///< camera frames of which the board delivers one, at least 1
    const PictureFiles* files = nullptr;  ///< borrowed; null counts the pictures and keeps none
};

enum class RecordingEnd { Complete, Interrupted, TimedOut, BoardFailed, StopFailed, FileFailed };

/// How a recording went. Every picture that the board delivered is in one of the first three counts.
struct RecordingReport {
    uint64_t pictures = 0;     ///< whole pictures, saved where files were asked for
    uint64_t incomplete = 0;   ///< pictures of another length than the window; not saved
    uint64_t overwritten = 0;  ///< pictures whose buffer the board needed again before they were taken
    uint64_t dropped = 0;  ///< pictures that the board did not deliver: gaps in their tags, which count camera frames
    double seconds = 0;    ///< from the first picture taken to the last
    RecordingEnd end = RecordingEnd::Complete;
    int code = 0;  ///< the board's answer that ended it
    frameindex_t waitedFor = 0;
    std::string problem;  ///< what could not be written
};

/// Takes the pictures of a running acquisition one after another. When it falls behind the board, it goes on with
/// the newest picture and counts what it missed.
class Recording {
public:
    Recording(host::Acquisition& acquisition, const StopSignals& signals, const RecordingPlan& plan);

    /// Runs until the plan is fulfilled, a signal comes, the camera falls silent or a file cannot be written.
    RecordingReport run();

private:
    using Clock = std::chrono::steady_clock;

    bool waitForNext();
    void take();
    void skipToNewest();
    void countTag(const host::Frame& frame);
    void end(RecordingEnd reason, int code = 0);

    host::Acquisition& mAcquisition;
    const StopSignals& mSignals;
    const RecordingPlan mPlan;
    RecordingReport mReport;
    frameindex_t mNext = 1;
    bool mIsEnded = false;
    std::vector<std::byte> mPixels;
    std::optional<Clock::time_point> mFirstTaken;
    frameindex_t mTaggedPicture = 0;  ///< picture that had mTag; 0 before the first
    uint32_t mTag = 0;
};

}  // namespace quillon::tool
