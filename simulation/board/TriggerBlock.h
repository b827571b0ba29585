#pragma once

#include <cstdint>

#include "simulation/board/PulseLine.h"
#include "simulation/board/SignalProbe.h"
#include "simulation/board/TriggerSettings.h"

namespace simulation {

/// The area trigger block as its registers set it up: a model in its own time. It is told what happens and the time,
/// and answers what its outputs do. Times never go back. It is a plain value: a copy can look ahead.
class TriggerBlock {
public:
    /// New register contents. Switching on, and another maker of pulses, start afresh with the whole pulse limit.
    void apply(const TriggerSettings& settings, BoardTime now);
    [[nodiscard]] const TriggerSettings& settings() const { return mSettings; }

    /// The host has written the pulse limit: the count starts again.
    void rearm(BoardTime now);

    /// The host adds triggers to the queue; what is beyond \p capacity is dropped, and so are all while it is off.
    void enqueue(uint64_t triggers, uint64_t capacity);

    /// An input changes its level.
    void inputEdge(unsigned input, bool rises, BoardTime now);

    /// When something happens by itself; a time that has passed means at once.
    [[nodiscard]] MaybeTime next() const;
    void step(BoardTime now);

    [[nodiscard]] bool isBusy(BoardTime now) const { return now < mBusyUntil; }
    [[nodiscard]] BoardTime busyUntil() const { return mBusyUntil; }
    [[nodiscard]] uint64_t queued() const { return mQueued; }

    /// Triggers that came while the block was busy or its pulse limit was reached.
    [[nodiscard]] uint64_t ignored() const { return mIgnored; }
    [[nodiscard]] uint64_t pulses() const { return mExSync.pulses(); }
    [[nodiscard]] BoardTime lastTrigger() const { return mExSync.lastTrigger(); }

    [[nodiscard]] const SignalProbe& exSync() const { return mExSyncProbe; }
    [[nodiscard]] const SignalProbe& flash() const { return mFlashProbe; }

    /// A time after \p now by which pulses have begun, if any come. \param inputPeriod of the pulses at the input
    [[nodiscard]] BoardTime horizon(BoardTime now, BoardTime inputPeriod) const;

    /// As if \p pulses had come and gone meanwhile.
    void skip(uint64_t pulses, BoardTime by);

    /// How many more pulses may be skipped.
    [[nodiscard]] uint64_t skippable() const;

private:
    void restart(BoardTime now);
    void fire(BoardTime now);
    [[nodiscard]] bool issues() const;
    void drive(BoardTime now);

    TriggerSettings mSettings;
    PulseLine mExSync;
    PulseLine mFlash;
    BoardTime mBusyUntil{0};
    uint64_t mQueued = 0;
    uint64_t mIgnored = 0;
    SignalProbe mExSyncProbe;
    SignalProbe mFlashProbe;
};

}  // namespace simulation
