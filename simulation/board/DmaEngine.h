#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <thread>

#include "simulation/board/BufferSet.h"
#include "simulation/board/Disturbances.h"
#include "simulation/board/Schedule.h"

namespace simulation {

/// Where the DMA gets its pictures from.
class FrameProducer {
public:
    FrameProducer() = default;
    virtual ~FrameProducer() = default;
    FrameProducer(const FrameProducer&) = delete;
    FrameProducer& operator=(const FrameProducer&) = delete;

    /// Makes what the first frame needs and takes long: in real time that frame would be late otherwise. Called before
    /// the transfer, from the thread that starts it.
    virtual void prepare() = 0;

    /// Whether frames pass now. Asked from the DMA thread; DmaEngine::wake() tells it that the answer may differ.
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// The same for a frame that comes \p elapsed after the start of its transfer.
    [[nodiscard]] virtual bool isOpenAt(BoardTime elapsed) const = 0;

    /// Whether frame \p number, from 1, goes into a buffer when it passes.
    [[nodiscard]] virtual bool isSelected(uint64_t number) const = 0;

    /// Makes the picture of frame \p number, from 1, after \p exposure. \return the number of bytes written.
    virtual size_t produce(uint64_t number, BoardTime exposure, std::span<uint8_t> target) = 0;
};

/// Counts of the current or last transfer.
struct TransferStatistics {
    uint64_t delivered = 0;
    uint64_t lost = 0;     // no free buffer, or a disturbance
    uint64_t skipped = 0;  // the machine was too slow for the camera
    uint64_t missed = 0;   // the camera was too slow for its trigger
    uint64_t dropped = 0;  // of the lost: on the way to the DMA
    uint64_t held = 0;     // of the lost: while the DMA was held
};

/// Moves frames into the host's buffers, in the one thread that the board has. Start and stop may come from
/// different threads.
class DmaEngine {
public:
    DmaEngine(FrameProducer& producer, Schedule& schedule, const Disturbances& disturbances)
        : mProducer(producer), mSchedule(schedule), mDisturbances(disturbances) {}
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

    /// Something changed that decides whether frames pass, or when.
    void wake();

    /// Whether a transfer leads the time of fast mode on. It does not while no frame can be foreseen.
    [[nodiscard]] bool leads() const;

    /// The path was reset: the next frame is number 1 again.
    void restartFrames() { mRestartFrames = true; }

    [[nodiscard]] TransferStatistics statistics() const;

private:
    void run(BufferSet& buffers, const TransferPlan& plan);
    [[nodiscard]] bool transferRuns() const { return mBuffers != nullptr && mBuffers->isRunning(); }
    [[nodiscard]] std::optional<CompletedFrame> waitForFrame();
    [[nodiscard]] std::optional<CompletedFrame> lookForFrame(MaybeTime& due);
    void waitForChange(uint32_t seen);
    [[nodiscard]] bool waitUntil(BoardTime time, uint32_t seen);
    [[nodiscard]] bool isTooLate(const CompletedFrame& frame) const;
    void number(const CompletedFrame& frame, bool passes);
    [[nodiscard]] bool handle(BufferSet& buffers, bool waits, const CompletedFrame& frame, int32_t& picture);
    [[nodiscard]] bool deliver(BufferSet& buffers, bool waits, const CompletedFrame& frame, int32_t& picture);
    [[nodiscard]] bool isLost(BoardTime elapsed);
    void count(uint64_t TransferStatistics::*counter, uint64_t frames);

    FrameProducer& mProducer;
    Schedule& mSchedule;
    const Disturbances& mDisturbances;

    mutable std::mutex mControlMutex;     // one start or stop at a time
    std::thread mThread;                  // guarded by mControlMutex
    std::shared_ptr<BufferSet> mBuffers;  // guarded by mControlMutex

    mutable std::mutex mMutex;
    std::condition_variable mWake;
    TransferStatistics mStatistics;  // guarded by mMutex
    bool mIsIdle = false;            // guarded by mMutex; the thread waits until something changes

    std::atomic<bool> mStops{false};
    std::atomic<bool> mRestartFrames{false};
    std::atomic<uint32_t> mChanges{0};  // written under mMutex

    // Of the DMA thread.
    uint64_t mFrame = 0;    // number of the present frame, 0 before the first one that passes
    uint64_t mOrdinal = 0;  // of the frame before
};

}  // namespace simulation
