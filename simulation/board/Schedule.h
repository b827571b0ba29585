#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

#include "simulation/board/Camera.h"
#include "simulation/board/Clock.h"
#include "simulation/board/FrameTiming.h"
#include "simulation/board/Generator.h"
#include "simulation/board/RegisterStore.h"

namespace simulation {

/// What a person reads off the trigger block at the bench.
struct TriggerReport {
    BoardTime now{0};
    bool isBusy = false;
    uint64_t queued = 0;
    uint64_t pulses = 0;
    uint64_t ignored = 0;
    BoardTime lastTrigger{0};
    SignalProbe exSync;
    SignalProbe flash;
};

/// The board's time, and what it brings: the one place where registers, bench and clock come together with the timing
/// model. Any thread may call it. In real time whoever asks brings the model up to now; in fast mode the DMA thread
/// leads it from frame to frame.
class Schedule {
public:
    Schedule(RegisterStore& registers, const Camera& camera) : mRegisters(registers), mCamera(camera) {}

    /// Time starts, and the registers are found by their names; not while a transfer runs.
    void configure();

    void setMode(ClockMode mode);
    [[nodiscard]] ClockMode mode() const { return mClock.mode(); }

    /// Whether \p handle belongs to what decides when frames come.
    [[nodiscard]] bool has(int handle) const;

    /// The host writes such a register. \return as RegisterStore::write.
    [[nodiscard]] int write(int handle, uint64_t value);

    [[nodiscard]] bool isStatus(int handle) const { return handle != 0 && (handle == mBusy || handle == mFillLevel); }

    /// What a status register shows. \param steps no transfer leads the time of fast mode: after kPatience reads in a
    /// row it moves on to what the trigger block does next, or a host that polls would wait for ever.
    [[nodiscard]] uint64_t status(int handle, bool steps);
    static constexpr int kPatience = 16;

    /// The camera has changed.
    void cameraChanged();

    // The inputs at the bench. An input is below InputLines::kInputs.

    void setLevels(uint32_t levels);
    void pulse(unsigned input);
    void setInputPeriod(unsigned input, std::optional<BoardTime> period);

    [[nodiscard]] TriggerReport report();

    // What the DMA thread asks.

    /// A transfer starts: frames that are complete already are gone.
    void begin();

    /// It has ended: frames go nowhere.
    void end();

    /// When the next frame is complete; none as long as nothing changes.
    [[nodiscard]] MaybeTime nextFrame();

    /// The next frame, if it is complete. In fast mode time jumps there.
    [[nodiscard]] std::optional<CompletedFrame> takeFrame();

    /// How long after the start of the current or last transfer \p time is; less than 0 before the first one.
    [[nodiscard]] BoardTime sinceBegin(BoardTime time) const;
    [[nodiscard]] BoardTime sinceBegin() const;

    [[nodiscard]] Clock::TimePoint pointOf(BoardTime time) const { return mClock.pointOf(time); }

    /// Triggers that the camera was too slow for, since begin().
    [[nodiscard]] uint64_t missed() const;

private:
    void catchUp();
    void apply();
    [[nodiscard]] TimingSettings settings() const;

    RegisterStore& mRegisters;
    const Camera& mCamera;

    // Set by configure().
    RegisterRow<TriggerSettings::kRegisters.size()> mTriggerRow{TriggerSettings::kRegisters};
    RegisterRow<Generator::kRegisters.size()> mGeneratorRow{Generator::kRegisters};
    int mCcConfig = 0;
    int mQueueTriggers = 0;
    int mLimit = 0;
    int mBusy = 0;
    int mFillLevel = 0;
    uint64_t mCapacity = 0;

    mutable std::mutex mMutex;
    Clock mClock;                         // changes only while no transfer runs
    FrameTiming mTiming;                  // guarded by mMutex
    std::deque<CompletedFrame> mFrames;   // guarded by mMutex; complete, not taken yet
    bool mIsTransferring = false;         // guarded by mMutex
    uint64_t mMissedBefore = 0;           // guarded by mMutex
    BoardTime mBegin = BoardTime::max();  // guarded by mMutex; of the current or last transfer
    int mReads = 0;                       // guarded by mMutex; of status registers since the last write
};

}  // namespace simulation
