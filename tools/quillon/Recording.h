#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "IntervalStatistics.h"
#include "PictureWriter.h"
#include "host/Acquisition.h"
#include "host/TagGaps.h"

namespace quillon::tool {

/// What a recording is to do.
struct RecordingPlan {
    frameindex_t pictures = 0;
    int timeoutSeconds = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t framesPerPicture = 1;    ///< camera frames of which the board delivers one, at least 1
    PictureWriter* writer = nullptr;  ///< borrowed; null counts the pictures and keeps none
    bool keepsLast = false;           ///< whether lastPicture() is wanted
};

enum class RecordingEnd { Complete, Stopped, TimedOut, BoardFailed, StopFailed, FileFailed };

/// How a recording went. Every picture that the board delivered is in one of the first four counts.
struct RecordingReport {
    uint64_t pictures = 0;     ///< whole pictures, saved where files were asked for
    uint64_t incomplete = 0;   ///< pictures of another length than the window; not saved
    uint64_t slowDisk = 0;     ///< pictures that were lost because those before them were still being written
    uint64_t overwritten = 0;  ///< pictures whose buffer the board needed again before the tool looked at them
    uint64_t dropped = 0;   ///< pictures that the board did not deliver: gaps in their tags, which count camera frames
    uint64_t timeOuts = 0;  ///< waits for a picture that ran out
    uint64_t stops = 0;     ///< 1 when it was stopped before its end
    double seconds = 0;     ///< from the first picture taken to the last
    IntervalStatistics intervals;  ///< by the board's time stamps
    RecordingEnd end = RecordingEnd::Complete;
    int code = 0;  ///< the board's answer that ended it
    frameindex_t waitedFor = 0;
    std::string problem;  ///< what could not be written

    [[nodiscard]] uint64_t lost() const { return slowDisk + overwritten + dropped; }
};

/// What another thread may see of a recording that runs.
struct RecordingProgress {
    std::atomic<uint64_t> taken{0};
    std::atomic<uint64_t> lost{0};
};

/// Takes the pictures of a running acquisition one after another. When it falls behind the board, it goes on with
/// the newest picture and counts what it missed. A stop must also stop the acquisition, else its wait runs out.
class Recording {
public:
    /// \param progress kept up to date; borrowed
    Recording(host::Acquisition& acquisition, std::stop_token stop, const RecordingPlan& plan,
              RecordingProgress& progress);

    /// Runs until the plan is fulfilled, a stop is requested, the camera falls silent or a file cannot be written.
    RecordingReport run();

    /// \return the pixels of the last whole picture where the plan keeps it; empty when there was none
    [[nodiscard]] const std::vector<std::byte>& lastPicture() const { return mLastPicture; }

private:
    using Clock = std::chrono::steady_clock;

    bool waitForNext();
    void take();
    /// Copies the picture for those who want it. \return whether it is whole and still the one that was asked for
    bool copy(const host::Frame& frame, std::vector<std::byte>* place);
    void count(const host::Frame& frame);
    void skipToNewest(bool wasDiskSlow);
    void end(RecordingEnd reason, int code = 0);

    host::Acquisition& mAcquisition;
    const std::stop_token mStop;
    const RecordingPlan mPlan;
    RecordingProgress& mProgress;
    RecordingReport mReport;
    frameindex_t mNext = 1;
    bool mIsEnded = false;
    std::vector<std::byte> mLastPicture;
    std::optional<Clock::time_point> mFirstTaken;
    host::TagGaps mTags;
};

}  // namespace quillon::tool
