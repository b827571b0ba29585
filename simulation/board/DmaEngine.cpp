#include "simulation/board/DmaEngine.h"

#include "simulation/board/BoardCodes.h"

namespace simulation {

namespace {

/// A sleeping thread wakes late by about this much; the rest of the way it spins.
constexpr auto kSpinTime = std::chrono::microseconds(200);

}  // namespace

int DmaEngine::start(std::shared_ptr<BufferSet> buffers, const TransferPlan& plan) {
    const std::lock_guard control(mControlMutex);
    if (transferRuns()) return kBusy;
    if (mThread.joinable()) mThread.join();
    {
        const std::lock_guard lock(mMutex);
        mStatistics = {};
    }
    mStops = false;
    mBuffers = std::move(buffers);
    mBuffers->begin(plan);
    try {
        mThread = std::thread([this, plan] { run(*mBuffers, plan); });
    } catch (...) {
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
    mWake.notify_all();
}

TransferStatistics DmaEngine::statistics() const {
    const std::lock_guard lock(mMutex);
    return mStatistics;
}

void DmaEngine::count(uint64_t TransferStatistics::*counter, uint64_t frames) {
    const std::lock_guard lock(mMutex);
    mStatistics.*counter += frames;
}

void DmaEngine::run(BufferSet& buffers, const TransferPlan& plan) {
    mFrame = 0;
    mClock.align(mProducer.period());
    // In fast mode time stands still while the host keeps all buffers; a real camera does not wait.
    const bool waits = plan.handShake && mClock.mode() == ClockMode::fast;
    int32_t picture = 1;
    while (waitForFrame()) {
        if (mRestartFrames.exchange(false)) mFrame = 0;
        const bool isOpen = mProducer.isOpen();
        // The first frame that passes is number 1; from then on the camera counts on, whether frames pass or not.
        if (isOpen || countsOn()) ++mFrame;
        if (isOpen && mProducer.isSelected(mFrame) && !deliver(buffers, waits, picture)) break;
    }
}

bool DmaEngine::waitForFrame() {
    if (mClock.mode() == ClockMode::fast) {
        std::unique_lock lock(mMutex);
        mWake.wait(lock, [this] { return mStops || mProducer.isOpen(); });
        lock.unlock();
        mClock.advance(mProducer.period());
        return !mStops;
    }
    const uint64_t skipped = mClock.advance(mProducer.period());
    if (skipped > 0 && countsOn()) {
        mFrame += skipped;
        count(&TransferStatistics::skipped, skipped);
    }
    return waitUntilDue();
}

bool DmaEngine::waitUntilDue() {
    const Clock::TimePoint due = mClock.due();
    {
        std::unique_lock lock(mMutex);
        mWake.wait_until(lock, due - kSpinTime, [this] { return mStops.load(); });
    }
    while (!mStops && std::chrono::steady_clock::now() < due) {
    }
    return !mStops;
}

bool DmaEngine::deliver(BufferSet& buffers, bool waits, int32_t& picture) {
    const BufferSet::Claim claim = buffers.claim(picture, waits);
    if (claim.state == BufferSet::ClaimState::ended) return false;
    if (claim.state == BufferSet::ClaimState::noBuffer) {
        count(&TransferStatistics::lost, 1);
        return true;
    }
    const size_t length = mProducer.produce(mFrame, claim.target);
    count(&TransferStatistics::delivered, 1);
    const bool goesOn = buffers.publish({picture, mFrame, length, mClock.stamp()});
    if (goesOn) ++picture;
    return goesOn;
}

}  // namespace simulation
