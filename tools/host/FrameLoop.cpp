#include "host/FrameLoop.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "host/HostError.h"
#include "host/TagGaps.h"

namespace quillon::host {

namespace {

using Clock = std::chrono::steady_clock;

/// A library may measure its time-out with another clock.
constexpr std::chrono::milliseconds kClockTolerance{50};

/// The frames of one acquisition, one after another.
class FrameLoop {
public:
    FrameLoop(Acquisition& acquisition, uint32_t framesPerPicture, const FrameLoopPlan& plan,
              const FrameCallback& callback, const std::stop_token& stop)
        : mAcquisition(acquisition), mPlan(plan), mCallback(callback), mStop(stop), mTags(framesPerPicture) {}

    FrameLoopReport run() {
        while (!mIsEnded && mNext <= mPlan.frames && waitForNext()) take();
        return mReport;
    }

private:
    bool waitForNext();
    void take();
    void skipToNewest();
    void end(FrameLoopEnd reason, int code = 0);

    Acquisition& mAcquisition;
    const FrameLoopPlan& mPlan;
    const FrameCallback& mCallback;
    const std::stop_token& mStop;
    FrameLoopReport mReport;
    std::vector<std::byte> mBytes;
    frameindex_t mNext = 1;
    TagGaps mTags;
    bool mIsEnded = false;
};

bool FrameLoop::waitForNext() {
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(mPlan.timeoutSeconds) - kClockTolerance;
    const frameindex_t last = mStop.stop_requested() ? 0 : mAcquisition.waitFor(mNext, mPlan.timeoutSeconds);
    if (last >= mNext) return true;
    // The library's codes for a time-out and for a stop are its own: the clock and the request tell them apart.
    if (mStop.stop_requested()) {
        end(FrameLoopEnd::Stopped);
    } else {
        end(Clock::now() >= deadline ? FrameLoopEnd::TimedOut : FrameLoopEnd::Failed, last);
    }
    return false;
}

void FrameLoop::take() {
    Frame frame = mAcquisition.frame(mNext);
    mBytes.assign(frame.bytes.begin(), frame.bytes.end());
    if (mAcquisition.isOverwritten(mNext)) {
        skipToNewest();
        return;
    }
    frame.bytes = mBytes;
    mReport.dropped += mTags.take(frame).dropped;
    ++mNext;
    ++mReport.delivered;
    if (!mCallback(frame)) end(FrameLoopEnd::Refused);
}

void FrameLoop::skipToNewest() {
    const frameindex_t newest = mAcquisition.lastPicture();
    if (newest < mNext) {
        // Nothing to go on with: the board has stopped under the loop, or does not answer.
        mStop.stop_requested() ? end(FrameLoopEnd::Stopped) : end(FrameLoopEnd::Failed, newest);
        return;
    }
    const frameindex_t next = std::max(newest, mNext + 1);
    mReport.overwritten += static_cast<uint64_t>(next - mNext);
    mNext = next;
}

void FrameLoop::end(FrameLoopEnd reason, int code) {
    mReport.end = reason;
    mReport.code = code;
    mIsEnded = true;
}

}  // namespace

FrameLoopReport acquireFrames(Grabber& grabber, const BufferSet& buffers, const FrameLoopPlan& plan,
                              const FrameCallback& callback, const std::stop_token& stop) {
    if (!callback || plan.timeoutSeconds < 0) {
        throw HostError(FG_INVALID_ARGUMENT, "a frame loop needs a callback and a time-out of 0 s or more");
    }
    // The image selector delivers one of so many camera frames; the tags count all of them.
    int32_t period = 1;
    if (grabber.read(FG_IMG_SELECT_PERIOD, period, plan.port) < 0 || period < 1) period = 1;
    Acquisition acquisition(grabber, buffers, plan.frames, AcquisitionMode::Continuous, plan.port);
    FrameLoopReport report;
    {
        const std::stop_callback stopBoard(stop, [&] { acquisition.stop(); });
        report = FrameLoop(acquisition, static_cast<uint32_t>(period), plan, callback, stop).run();
    }
    const int stopCode = acquisition.stop();
    if (stopCode < 0 && report.code >= 0) {
        report.end = FrameLoopEnd::Failed;
        report.code = stopCode;
    }
    return report;
}

}  // namespace quillon::host
