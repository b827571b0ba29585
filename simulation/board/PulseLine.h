#pragma once

#include <cstdint>
#include <optional>

#include "simulation/board/BoardTime.h"

namespace simulation {

/// When a pulse begins after its trigger, and how long it lasts.
struct PulseShape {
    BoardTime delay{0};
    BoardTime width{0};

    bool operator==(const PulseShape&) const = default;
};

/// One output of the trigger block: a delay counter and a width counter. It is told the time and remembers what comes
/// next. A pulse that begins while the one before lasts prolongs it.
class PulseLine {
public:
    /// Ends the pulse and forgets what would come.
    void stop();

    /// How many more pulses may begin; without a number there is no end.
    void setLimit(std::optional<uint64_t> pulses) { mLeft = pulses; }
    [[nodiscard]] bool isExhausted() const { return mLeft == 0U; }

    /// The shape of pulses that have not begun yet.
    void setShape(const PulseShape& shape, BoardTime now);

    /// One pulse. While the delay of another one runs, the trigger is lost.
    void trigger(BoardTime now);

    /// A pulse at every \p period, the first one by a trigger at \p now.
    void repeat(BoardTime period, BoardTime now);

    /// Repeats on with another period, counted from the last trigger; from now, where that would be over already.
    void setPeriod(BoardTime period, BoardTime now);

    [[nodiscard]] MaybeTime next() const { return earlier(mStart, mEnd); }
    [[nodiscard]] MaybeTime start() const { return mStart; }
    void step(BoardTime now);

    [[nodiscard]] bool isActive() const { return mEnd.has_value(); }

    /// Pulses that have begun, and the trigger of the last one.
    [[nodiscard]] uint64_t pulses() const { return mPulses; }
    [[nodiscard]] BoardTime lastTrigger() const { return mLastTrigger; }

    /// How many more pulses a limit leaves, or none without a limit.
    [[nodiscard]] std::optional<uint64_t> left() const { return mLeft; }

    /// As if \p pulses had come and gone meanwhile.
    void skip(uint64_t pulses, BoardTime by);

private:
    void schedule(BoardTime trigger, BoardTime now);
    void begin(BoardTime start, BoardTime now);

    PulseShape mShape;
    std::optional<BoardTime> mPeriod;
    std::optional<uint64_t> mLeft;
    BoardTime mTrigger{0};  // of the pulse that begins at mStart
    MaybeTime mStart;
    MaybeTime mEnd;
    bool mHasBegun = false;  // a pulse of this repetition
    uint64_t mPulses = 0;
    BoardTime mLastTrigger{0};
};

}  // namespace simulation
