#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

#include "simulation/board/BufferSet.h"
#include "simulation/board/Clock.h"

namespace simulation {

/// Where the DMA gets its pictures from.
class FrameProducer {
public:
    FrameProducer() = default;
    virtual ~FrameProducer() = default;
    FrameProducer(const FrameProducer&) = delete;
    FrameProducer& operator=(const FrameProducer&) = delete;

    /// Whether frames pass now. Asked from the DMA thread; DmaEngine::wake() tells it that the answer may differ.
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Whether frames are counted on now while none passes: a camera runs on, a generator that is held does not.
    [[nodiscard]] virtual bool countsOn() const = 0;

    /// Whether frame \p number, from 1, goes into a buffer when it passes.
    [[nodiscard]] virtual bool isSelected(uint64_t number) const = 0;

    [[nodiscard]] virtual std::chrono::nanoseconds period() const = 0;

    /// Makes the picture of frame \p number, from 1. \return the number of bytes written.
    virtual size_t produce(uint64_t number, std::span<uint8_t> target) = 0;
};

/// Counts of the current or last transfer.
struct TransferStatistics {
    uint64_t delivered = 0;
    uint64_t lost = 0;     // no free buffer
    uint64_t skipped = 0;  // the machine was too slow for the camera
};

/// Moves frames into the host's buffers, in the one thread that the board has. Start and stop may come from
/// different threads.
class DmaEngine {
public:
    DmaEngine(FrameProducer& producer, Clock& clock) : mProducer(producer), mClock(clock) {}
    ~DmaEngine() { stop(); }
    DmaEngine(const DmaEngine&) = delete;
    DmaEngine& operator=(const DmaEngine&) = delete;

    /// Starts a transfer into \p buffers. \return 0, or kBusy while another one runs.
    [[nodiscard]] int start(std::shared_ptr<BufferSet> buffers, const TransferPlan& plan);

    /// Ends the transfer and every wait for it. Afterwards nothing writes to the buffers. Safe without a transfer.
    void stop();

    /// Whether a transfer runs: from its start until its last picture or its stop.
    [[nodiscard]] bool isRunning() const;

    /// Whether the running transfer uses \p buffers.
    [[nodiscard]] bool uses(const BufferSet& buffers) const;

    /// Something changed that decides whether frames pass.
    void wake();

    /// The path was reset: the next frame is number 1 again.
    void restartFrames() { mRestartFrames = true; }

    [[nodiscard]] TransferStatistics statistics() const;

private:
    void run(BufferSet& buffers, const TransferPlan& plan);
    [[nodiscard]] bool transferRuns() const { return mBuffers != nullptr && mBuffers->isRunning(); }
    [[nodiscard]] bool countsOn() const { return mFrame > 0 && mProducer.countsOn(); }
    [[nodiscard]] bool waitForFrame();
    [[nodiscard]] bool waitUntilDue();
    [[nodiscard]] bool deliver(BufferSet& buffers, bool waits, int32_t& picture);
    void count(uint64_t TransferStatistics::*counter, uint64_t frames);

    FrameProducer& mProducer;
    Clock& mClock;

    mutable std::mutex mControlMutex;     // one start or stop at a time
    std::thread mThread;                  // guarded by mControlMutex
    std::shared_ptr<BufferSet> mBuffers;  // guarded by mControlMutex

    mutable std::mutex mMutex;
    std::condition_variable mWake;
    TransferStatistics mStatistics;  // guarded by mMutex

    std::atomic<bool> mStops{false};
    std::atomic<bool> mRestartFrames{false};
    uint64_t mFrame = 0;  // of the DMA thread
};

}  // namespace simulation
