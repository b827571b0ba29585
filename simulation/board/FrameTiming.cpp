#include "simulation/board/FrameTiming.h"

#include <algorithm>

namespace simulation {

void FrameTiming::restart() {
    InputLines inputs(mInputs);
    inputs.restart();
    *this = {};
    mInputs = inputs;
}

void FrameTiming::apply(const TimingSettings& settings) {
    mSettings = settings;
    mTrigger.apply(settings.trigger, mNow);
    // An exposure that the change ends is over before the camera learns of anything else.
    follow();
    if (settings.generatorIsSource) {
        mCamera = {};
    } else {
        mCamera.apply(settings.camera, mNow);
    }
    mGenerator.set(settings.generatorIsSource ? settings.generatorPeriod : std::nullopt, mNow);
}

void FrameTiming::setLevels(uint32_t levels) {
    const uint32_t changed = levels ^ mInputs.levels();
    mInputs.setLevels(levels);
    for (unsigned input = 0; input < InputLines::kInputs; ++input) {
        if ((changed >> input & 1U) != 0) mTrigger.inputEdge(input, mInputs.level(input), mNow);
    }
}

void FrameTiming::pulse(unsigned input) {
    mInputs.pulse(input, mNow);
    mTrigger.inputEdge(input, !mInputs.level(input), mNow);
}

bool FrameTiming::lineIsLow() const {
    constexpr unsigned kExSync = 0;
    constexpr unsigned kFlash = 2;
    const CcLine& line = mSettings.line;
    const bool source =
        (line.source == kExSync && mTrigger.exSync().level) || (line.source == kFlash && mTrigger.flash().level);
    return source == line.isInverted;
}

/// The camera's trigger input is active while its line is low.
void FrameTiming::follow() {
    if (!mSettings.generatorIsSource) mCamera.trigger(lineIsLow(), mNow, mCount);
}

BoardTime FrameTiming::inputPeriod() const {
    const bool listens = mSettings.trigger.listensTo(TriggerSettings::Source::input);
    return listens ? mInputs.period(mSettings.trigger.input).value_or(BoardTime(0)) : BoardTime(0);
}

MaybeTime FrameTiming::nextOfTrigger() const {
    const TriggerSettings& trigger = mSettings.trigger;
    const bool listens = trigger.listensTo(TriggerSettings::Source::input);
    const MaybeTime input = listens ? mInputs.next(trigger.input, mNow) : std::nullopt;
    const MaybeTime rest = mTrigger.isBusy(mNow) ? MaybeTime(mTrigger.busyUntil()) : std::nullopt;
    return earlier(earlier(mTrigger.next(), rest), input);
}

MaybeTime FrameTiming::next() const {
    const MaybeTime frame = mSettings.generatorIsSource ? mGenerator.next() : mCamera.next();
    const MaybeTime next = earlier(nextOfTrigger(), frame);
    return next ? MaybeTime(std::max(*next, mNow)) : std::nullopt;
}

MaybeTime FrameTiming::nextFrame() const {
    if (mSettings.generatorIsSource) return mGenerator.next();
    if (!mSettings.camera.isTriggered) return mCamera.next();
    const TriggerSettings& trigger = mSettings.trigger;
    const BoardTime horizon = mTrigger.horizon(mNow, inputPeriod()) + trigger.exSync.delay + trigger.exSync.width +
                              trigger.flash.width + 2 * mSettings.camera.readout;
    FrameTiming ahead(*this);
    for (MaybeTime due = ahead.next(); due && *due <= horizon; due = ahead.next()) {
        if (ahead.step(*due)) return due;
    }
    return std::nullopt;
}

void FrameTiming::stepInputs() {
    if (!mSettings.trigger.listensTo(TriggerSettings::Source::input)) return;
    const unsigned input = mSettings.trigger.input;
    if (const auto rises = mInputs.edge(input, mNow)) mTrigger.inputEdge(input, *rises, mNow);
}

std::optional<CompletedFrame> FrameTiming::stepGenerator() {
    const MaybeTime due = mGenerator.next();
    if (!due || *due > mNow) return std::nullopt;
    mGenerator.step();
    return CompletedFrame{*due, ++mCount.ordinal, kAsShown};
}

std::optional<CompletedFrame> FrameTiming::step(BoardTime time) {
    const bool isLater = time > mNow;
    mNow = time;
    const auto frame = mSettings.generatorIsSource ? stepGenerator() : mCamera.step(time, mCount);
    // An edge of an input belongs to one step.
    if (isLater) stepInputs();
    mTrigger.step(time);
    follow();
    return frame;
}

void FrameTiming::advance(BoardTime time, std::deque<CompletedFrame>& frames) {
    for (MaybeTime due = next(); due && *due <= time; due = next()) {
        if (const auto frame = step(*due)) frames.push_back(*frame);
    }
    mNow = std::max(mNow, time);
}

void FrameTiming::pass(BoardTime time) {
    constexpr BoardTime kLong = std::chrono::seconds(1);
    const TriggerSettings& trigger = mSettings.trigger;
    const BoardTime input = inputPeriod();
    // The distance of the pulses: of those at the input, the block takes one whenever it has done with the last.
    const BoardTime round =
        input > BoardTime(0) ? (trigger.busyTime() + input - BoardTime(1)) / input * input : trigger.cycle;
    if (time - mNow > kLong && (trigger.generates() || input > BoardTime(0))) {
        const auto rounds = std::min(static_cast<uint64_t>((time - mNow - kLong) / round), mTrigger.skippable());
        skip(rounds, round * static_cast<int64_t>(rounds));
    }
    mCamera.skipTo(time);
    mGenerator.skipTo(time);
    std::deque<CompletedFrame> unwanted;
    advance(time, unwanted);
}

void FrameTiming::skip(uint64_t pulses, BoardTime by) {
    mNow += by;
    mInputs.skip(by);
    mTrigger.skip(pulses, by);
    mCamera.shift(by);
    mGenerator.shift(by);
}

}  // namespace simulation
