#include "Recording.h"

#include <algorithm>
#include <utility>

namespace quillon::tool {

namespace {

/// A library may measure its time-out with another clock.
constexpr std::chrono::milliseconds kClockTolerance{50};

}  // namespace

Recording::Recording(host::Acquisition& acquisition, std::stop_token stop, const RecordingPlan& plan,
                     RecordingProgress& progress)
    : mAcquisition(acquisition),
      mStop(std::move(stop)),
      mPlan(plan),
      mProgress(progress),
      mTags(plan.framesPerPicture) {}

RecordingReport Recording::run() {
    while (!mIsEnded && mNext <= mPlan.pictures) {
        if (waitForNext()) take();
        mProgress.taken = mReport.pictures + mReport.incomplete;
        mProgress.lost = mReport.lost();
    }
    return mReport;
}

bool Recording::waitForNext() {
    if (mStop.stop_requested()) {
        end(RecordingEnd::Stopped);
        return false;
    }
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(mPlan.timeoutSeconds) - kClockTolerance;
    const frameindex_t last = mAcquisition.waitFor(mNext, mPlan.timeoutSeconds);
    if (last >= mNext) return true;
    // The library's codes for a time-out and for a stop are its own: the clock and the request tell them apart.
    if (mStop.stop_requested()) {
        end(RecordingEnd::Stopped);
    } else if (Clock::now() >= deadline) {
        end(RecordingEnd::TimedOut, last);
    } else {
        end(RecordingEnd::BoardFailed, last);
    }
    return false;
}

void Recording::take() {
    std::optional<PictureWriter::Pixels> place;
    if (mPlan.writer != nullptr) {
        place = mPlan.writer->takePlace(mStop);
        if (!place) {
            end(mStop.stop_requested() ? RecordingEnd::Stopped : RecordingEnd::FileFailed);
            return;
        }
    }
    const host::Frame frame = mAcquisition.frame(mNext);
    const bool isWhole = copy(frame, place ? &*place : nullptr);
    if (mAcquisition.isOverwritten(mNext)) {
        if (place) mPlan.writer->giveBack(std::move(*place));
        skipToNewest(place && mPlan.writer->hasWaited());
        return;
    }
    count(frame);
    if (isWhole) {
        ++mReport.pictures;
        if (place) mPlan.writer->write(mNext, std::move(*place));
    } else {
        ++mReport.incomplete;
        if (place) mPlan.writer->giveBack(std::move(*place));
    }
    ++mNext;
}

bool Recording::copy(const host::Frame& frame, std::vector<std::byte>* place) {
    // Copies, because the board may come round to the buffer while they are written.
    if (frame.length != size_t{mPlan.width} * mPlan.height) return false;
    if (place != nullptr) place->assign(frame.bytes.begin(), frame.bytes.end());
    if (mPlan.keepsLast) mLastPicture.assign(frame.bytes.begin(), frame.bytes.end());
    return true;
}

void Recording::count(const host::Frame& frame) {
    const Clock::time_point now = Clock::now();
    if (!mFirstTaken) mFirstTaken = now;
    mReport.seconds = std::chrono::duration<double>(now - *mFirstTaken).count();
    const host::TagGaps::Step step = mTags.take(frame);
    mReport.intervals.add(frame.timeStamp, frame.number, step.isNext);
    mReport.dropped += step.dropped;
}

void Recording::skipToNewest(bool wasDiskSlow) {
    if (mStop.stop_requested()) {
        end(RecordingEnd::Stopped);
        return;
    }
    const frameindex_t newest = mAcquisition.lastPicture();
    if (newest < mNext) {
        end(RecordingEnd::BoardFailed, newest);
        return;
    }
    const frameindex_t next = std::max(newest, mNext + 1);
    (wasDiskSlow ? mReport.slowDisk : mReport.overwritten) += static_cast<uint64_t>(next - mNext);
    mNext = next;
}

void Recording::end(RecordingEnd reason, int code) {
    mReport.end = reason;
    mReport.code = code;
    mReport.waitedFor = mNext;
    if (reason == RecordingEnd::Stopped) ++mReport.stops;
    if (reason == RecordingEnd::TimedOut) ++mReport.timeOuts;
    mIsEnded = true;
}

}  // namespace quillon::tool
