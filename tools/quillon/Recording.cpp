#include "Recording.h"

#include <algorithm>
#include <utility>

namespace quillon::tool {

namespace {

/// A library may measure its time-out with another clock.
constexpr std::chrono::milliseconds kClockTolerance{50};

/// Tags are the positive half of an int, because negative ones are codes: after the last one they begin at 0 again.
constexpr uint32_t kTagMask = 0x7FFF'FFFF;

}  // namespace

Recording::Recording(host::Acquisition& acquisition, std::stop_token stop, const RecordingPlan& plan,
                     RecordingProgress& progress)
    : mAcquisition(acquisition), mStop(std::move(stop)), mPlan(plan), mProgress(progress) {}

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
    const bool isNext = mTaggedPicture + 1 == frame.number && ((frame.tag - mTag) & kTagMask) == mPlan.framesPerPicture;
    mReport.intervals.add(frame.timeStamp, frame.number, isNext);
    countTag(frame);
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

void Recording::countTag(const host::Frame& frame) {
    if (mTaggedPicture != 0) {
        const uint32_t framesPassed = (frame.tag - mTag) & kTagMask;
        const uint32_t picturesDue = framesPassed / mPlan.framesPerPicture;
        const auto picturesPassed = static_cast<uint32_t>(frame.number - mTaggedPicture);
        if (picturesDue > picturesPassed) mReport.dropped += picturesDue - picturesPassed;
    }
    mTaggedPicture = frame.number;
    mTag = frame.tag;
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
