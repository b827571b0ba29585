#include "simulation/board/DmaEngine.h"

#include "simulation/board/BoardCodes.h"

namespace simulation {

namespace {

/// A sleeping thread wakes late by about this much; the rest of the way it spins.
constexpr auto kSpinTime = std::chrono::microseconds(400);

/// Later than this, a frame is given up: a camera does not wait for a machine that is too slow for it.
constexpr auto kLargestDelay = std::chrono::seconds(1);

}  // namespace

int DmaEngine::start(std::shared_ptr<BufferSet> buffers, const TransferPlan& plan) {
    const std::lock_guard control(mControlMutex);
    if (transferRuns()) return kBusy;
    if (mThread.joinable()) mThread.join();
    mProducer.prepare();
    {
        const std::lock_guard lock(mMutex);
        mStatistics = {};
    }
    mStops = false;
    mBuffers = std::move(buffers);
    mBuffers->begin(plan);
    mSchedule.begin();
    try {
        mThread = std::thread([this, plan] { run(*mBuffers, plan); });
    } catch (...) {
        mSchedule.end();
        mBuffers->end();
        throw;
    }
    return kOk;
}

void DmaEngine::stop() {
    const std::lock_guard control(mControlMutex);
    mStops = true;
    if (mBuffers != nullptr) mBuffers->end();
    wake();
    if (mThread.joinable()) mThread.join();
    mBuffers.reset();
}

bool DmaEngine::isRunning() const {
    const std::lock_guard control(mControlMutex);
    return transferRuns();
}

bool DmaEngine::uses(const BufferSet& buffers) const {
    const std::lock_guard control(mControlMutex);
    return transferRuns() && mBuffers.get() == &buffers;
}

void DmaEngine::wake() {
    // The lock makes sure that the thread has either not looked yet or is asleep already.
    const std::lock_guard lock(mMutex);
    ++mChanges;
    mIsIdle = false;
    mWake.notify_all();
}

bool DmaEngine::leads() const {
    if (!isRunning()) return false;
    const std::lock_guard lock(mMutex);
    return !mIsIdle;
}

TransferStatistics DmaEngine::statistics() const {
    TransferStatistics statistics;
    {
        const std::lock_guard lock(mMutex);
        statistics = mStatistics;
    }
    statistics.missed = mSchedule.missed();
    return statistics;
}

void DmaEngine::count(uint64_t TransferStatistics::*counter, uint64_t frames) {
    const std::lock_guard lock(mMutex);
    mStatistics.*counter += frames;
}

void DmaEngine::run(BufferSet& buffers, const TransferPlan& plan) {
    mFrame = 0;
    // In fast mode time stands still while the host keeps all buffers; a real camera does not wait.
    const bool waits = plan.handShake && mSchedule.mode() == ClockMode::fast;
    int32_t picture = 1;
    bool goesOn = true;
    while (goesOn) {
        const auto frame = waitForFrame();
        goesOn = frame && handle(buffers, waits, *frame, picture);
    }
    mSchedule.end();
}

/// \return whether the transfer goes on.
bool DmaEngine::handle(BufferSet& buffers, bool waits, const CompletedFrame& frame, int32_t& picture) {
    if (mRestartFrames.exchange(false)) mFrame = 0;
    const BoardTime elapsed = mSchedule.sinceBegin(frame.time);
    const bool isOpen = mProducer.isOpenAt(elapsed);
    number(frame, isOpen);
    if (isTooLate(frame)) {
        if (mFrame > 0) count(&TransferStatistics::skipped, 1);
        return true;
    }
    if (!isOpen || !mProducer.isSelected(mFrame) || isLost(elapsed)) return true;
    return deliver(buffers, waits, frame, picture);
}

/// Whether a disturbance takes the present frame; it is counted then.
bool DmaEngine::isLost(BoardTime elapsed) {
    const Loss loss = mDisturbances.lossOf(mFrame, elapsed);
    if (loss == Loss::none) return false;
    count(&TransferStatistics::lost, 1);
    count(loss == Loss::dropped ? &TransferStatistics::dropped : &TransferStatistics::held, 1);
    return true;
}

/// The first frame that passes is number 1; from then on frames and triggers count, whether frames pass or not.
void DmaEngine::number(const CompletedFrame& frame, bool passes) {
    if (mFrame > 0) {
        mFrame += frame.ordinal - mOrdinal;
    } else if (passes) {
        mFrame = 1;
    }
    mOrdinal = frame.ordinal;
}

std::optional<CompletedFrame> DmaEngine::waitForFrame() {
    while (!mStops) {
        const uint32_t seen = mChanges;
        MaybeTime due;
        if (auto frame = lookForFrame(due)) return frame;
        if (!due) {
            waitForChange(seen);
        } else if (waitUntil(*due, seen)) {
            if (auto frame = mSchedule.takeFrame()) return frame;
        }
    }
    return std::nullopt;
}

/// In fast mode a frame comes at once, if one comes at all, and time stands still while none can pass; in real time
/// \p due tells when it comes.
std::optional<CompletedFrame> DmaEngine::lookForFrame(MaybeTime& due) {
    if (mSchedule.mode() == ClockMode::fast) return mProducer.isOpen() ? mSchedule.takeFrame() : std::nullopt;
    due = mSchedule.nextFrame();
    return std::nullopt;
}

void DmaEngine::waitForChange(uint32_t seen) {
    std::unique_lock lock(mMutex);
    mIsIdle = mChanges == seen;
    mWake.wait(lock, [&] { return mStops || mChanges != seen; });
    mIsIdle = false;
}

/// \return whether the time has come; if not, something has changed meanwhile.
bool DmaEngine::waitUntil(BoardTime time, uint32_t seen) {
    const Clock::TimePoint due = mSchedule.pointOf(time);
    const auto isOver = [&] { return mStops || mChanges != seen; };
    {
        std::unique_lock lock(mMutex);
        mWake.wait_until(lock, due - kSpinTime, isOver);
    }
    while (std::chrono::steady_clock::now() < due) {
        if (isOver()) return false;
    }
    return true;
}

bool DmaEngine::isTooLate(const CompletedFrame& frame) const {
    return mSchedule.mode() == ClockMode::realTime &&
           std::chrono::steady_clock::now() - mSchedule.pointOf(frame.time) > kLargestDelay;
}

bool DmaEngine::deliver(BufferSet& buffers, bool waits, const CompletedFrame& frame, int32_t& picture) {
    const BufferSet::Claim claim = buffers.claim(picture, waits);
    if (claim.state == BufferSet::ClaimState::ended) return false;
    if (claim.state == BufferSet::ClaimState::noBuffer) {
        count(&TransferStatistics::lost, 1);
        return true;
    }
    const size_t length = mProducer.produce(mFrame, frame.exposure, claim.target);
    count(&TransferStatistics::delivered, 1);
    const bool goesOn = buffers.publish(
        {picture, mFrame, length, frame.time, mDisturbances.tagOf(mFrame), mDisturbances.timeStampOf(frame.time)});
    if (goesOn) ++picture;
    return goesOn;
}

}  // namespace simulation
