#include "Recording.h"

#include <algorithm>

#include "ToolError.h"

namespace quillon::tool {

namespace {

/// A library may measure its time-out with another clock.
constexpr std::chrono::milliseconds kClockTolerance{50};

}  // namespace

Recording::Recording(host::Acquisition& acquisition, const StopSignals& signals, const RecordingPlan& plan)
    : mAcquisition(acquisition), mSignals(signals), mPlan(plan) {}

RecordingReport Recording::run() {
    try {
        while (!mIsEnded && mNext <= mPlan.pictures) {
            if (waitForNext()) take();
        }
    } catch (const ToolError& error) {
        mReport.problem = error.what();
        end(RecordingEnd::FileFailed);
    }
    return mReport;
}

bool Recording::waitForNext() {
    if (mSignals.received() != 0) {
        end(RecordingEnd::Interrupted);
        return false;
    }
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(mPlan.timeoutSeconds) - kClockTolerance;
    const frameindex_t last = mAcquisition.waitFor(mNext, mPlan.timeoutSeconds);
    if (last >= mNext) return true;
    // The library's codes for a time-out and for a stop are its own: the clock and the signal tell them apart.
    if (mSignals.received() != 0) {
        end(RecordingEnd::Interrupted);
    } else if (Clock::now() >= deadline) {
        end(RecordingEnd::TimedOut, last);
    } else {
        end(RecordingEnd::BoardFailed, last);
    }
    return false;
}

void Recording::take() {
    const host::Frame frame = mAcquisition.frame(mNext);
    // A copy, because the board may come round to the buffer while a file is written.
    if (mPlan.files != nullptr) mPixels.assign(frame.bytes.begin(), frame.bytes.end());
    if (mAcquisition.isOverwritten(mNext)) {
        skipToNewest();
        return;
    }
    const Clock::time_point now = Clock::now();
    if (!mFirstTaken) mFirstTaken = now;
    mReport.seconds = std::chrono::duration<double>(now - *mFirstTaken).count();
    countTag(frame);
    if (frame.length != size_t{mPlan.width} * mPlan.height) {
        ++mReport.incomplete;
    } else {
        if (mPlan.files != nullptr) mPlan.files->write(mNext, {mPlan.width, mPlan.height, mPixels});
        ++mReport.pictures;
    }
    ++mNext;
}

void Recording::skipToNewest() {
    if (mSignals.received() != 0) {
        end(RecordingEnd::Interrupted);
        return;
    }
    const frameindex_t newest = mAcquisition.lastPicture();
    if (newest < mNext) {
        end(RecordingEnd::BoardFailed, newest);
        return;
    }
    const frameindex_t next = std::max(newest, mNext + 1);
    mReport.overwritten += static_cast<uint64_t>(next - mNext);
    mNext = next;
}

void Recording::countTag(const host::Frame& frame) {
    if (mTaggedPicture != 0) {
        const uint32_t framesPassed = frame.tag - mTag;
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
    mIsEnded = true;
}

}  // namespace quillon::tool
