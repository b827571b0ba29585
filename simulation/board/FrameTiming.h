#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "simulation/board/CameraTiming.h"
#include "simulation/board/CcLine.h"
#include "simulation/board/InputLines.h"
#include "simulation/board/TriggerBlock.h"

namespace simulation {

/// What decides when frames come, beside the inputs.
struct TimingSettings {
    TriggerSettings trigger;
    CameraTiming::Settings camera;
    CcLine line{4, true};                      // that the camera's trigger input hangs on
    bool generatorIsSource = false;            // frames come from the test-image generator
    std::optional<BoardTime> generatorPeriod;  // none while it sends nothing
};

/// When frames are complete: inputs, trigger block, camera and test-image generator together, in the board's own time.
/// It is told what happens and the time, which never goes back. It is a plain value: a copy looks ahead.
class FrameTiming {
public:
    /// Time starts at 0; only what is fed into the inputs stays.
    void restart();

    void apply(const TimingSettings& settings);
    void rearm() { mTrigger.rearm(mNow); }
    void enqueue(uint64_t triggers, uint64_t capacity) { mTrigger.enqueue(triggers, capacity); }

    // The inputs at the bench.

    void setLevels(uint32_t levels);
    void pulse(unsigned input);
    void setInputPeriod(unsigned input, std::optional<BoardTime> period) { mInputs.setPeriod(input, period, mNow); }

    [[nodiscard]] BoardTime now() const { return mNow; }
    [[nodiscard]] const TriggerBlock& trigger() const { return mTrigger; }
    [[nodiscard]] const FrameCount& count() const { return mCount; }

    /// When the next frame is complete; none as long as nothing changes.
    [[nodiscard]] MaybeTime nextFrame() const;

    /// When the trigger block does something next.
    [[nodiscard]] MaybeTime nextOfTrigger() const;

    /// Lives on until \p time; frames that are complete join \p frames.
    void advance(BoardTime time, std::deque<CompletedFrame>& frames);

    /// The same without the frames, for a time that may be long: whole periods are left out.
    void pass(BoardTime time);

    /// Counts all times from \p origin on.
    void rebase(BoardTime origin) { skip(0, -origin); }

private:
    [[nodiscard]] MaybeTime next() const;
    std::optional<CompletedFrame> step(BoardTime time);
    std::optional<CompletedFrame> stepGenerator();
    void stepInputs();
    void follow();
    [[nodiscard]] bool lineIsLow() const;
    [[nodiscard]] BoardTime inputPeriod() const;
    void skip(uint64_t pulses, BoardTime by);

    BoardTime mNow{0};
    TimingSettings mSettings;
    InputLines mInputs;
    TriggerBlock mTrigger;
    CameraTiming mCamera;
    Cadence mGenerator;
    FrameCount mCount;
};

}  // namespace simulation
