#include "simulation/board/TriggerBlock.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace simulation {

void TriggerBlock::apply(const TriggerSettings& settings, BoardTime now) {
    const TriggerSettings old = std::exchange(mSettings, settings);
    if (!settings.queueIsOn) mQueued = 0;
    mExSync.setShape(settings.exSync, now);
    mFlash.setShape(settings.flash, now);
    if (settings.isOn != old.isOn || settings.maker != old.maker) {
        restart(now);
    } else if (settings.generates()) {
        mExSync.setPeriod(settings.cycle, now);
        mFlash.setPeriod(settings.cycle, now);
    }
    const bool rises = settings.switchIsSet && !old.switchIsSet;
    if (rises && settings.listensTo(TriggerSettings::Source::imageSwitch)) fire(now);
    drive(now);
}

void TriggerBlock::restart(BoardTime now) {
    mBusyUntil = now;
    for (PulseLine* line : {&mExSync, &mFlash}) {
        line->stop();
        line->setLimit(mSettings.limit);
        if (mSettings.generates()) line->repeat(mSettings.cycle, now);
    }
}

void TriggerBlock::rearm(BoardTime now) {
    for (PulseLine* line : {&mExSync, &mFlash}) {
        const bool hadStopped = line->isExhausted();
        line->setLimit(mSettings.limit);
        if (mSettings.generates() && hadStopped) line->repeat(mSettings.cycle, now);
    }
}

void TriggerBlock::enqueue(uint64_t triggers, uint64_t capacity) {
    if (mSettings.queueIsOn) mQueued = std::min(capacity, mQueued + std::min(triggers, capacity));
}

void TriggerBlock::inputEdge(unsigned input, bool rises, BoardTime now) {
    const bool isMine = mSettings.listensTo(TriggerSettings::Source::input) && input == mSettings.input;
    if (isMine && rises != mSettings.inputLowActive) fire(now);
}

void TriggerBlock::fire(BoardTime now) {
    if (isBusy(now) || mExSync.isExhausted()) {
        ++mIgnored;
        return;
    }
    mExSync.trigger(now);
    mFlash.trigger(now);
    mBusyUntil = now + mSettings.busyTime();
}

bool TriggerBlock::issues() const {
    return mQueued > 0 && mSettings.listensTo(TriggerSettings::Source::queue) && !mExSync.isExhausted();
}

MaybeTime TriggerBlock::next() const {
    const MaybeTime edge = earlier(mExSync.next(), mFlash.next());
    return issues() ? earlier(edge, mBusyUntil) : edge;
}

void TriggerBlock::step(BoardTime now) {
    mExSync.step(now);
    mFlash.step(now);
    if (issues() && !isBusy(now)) {
        --mQueued;
        fire(now);
    }
    drive(now);
}

void TriggerBlock::drive(BoardTime now) {
    const bool flashes = mFlash.isActive() && mSettings.flashIsOn;
    mExSyncProbe.see(mExSync.isActive() == mSettings.exSyncHighActive, now);
    mFlashProbe.see(flashes == mSettings.flashHighActive, now);
}

BoardTime TriggerBlock::horizon(BoardTime now, BoardTime inputPeriod) const {
    constexpr int kRounds = 3;
    const BoardTime round = mSettings.generates() ? mSettings.cycle : mSettings.busyTime();
    const BoardTime begin = std::max(mExSync.start().value_or(now), mFlash.start().value_or(now));
    return std::max({now, begin, mBusyUntil}) + kRounds * std::max(round, inputPeriod);
}

void TriggerBlock::skip(uint64_t pulses, BoardTime by) {
    mExSync.skip(pulses, by);
    mFlash.skip(pulses, by);
    mBusyUntil += by;
    for (SignalProbe* probe : {&mExSyncProbe, &mFlashProbe}) {
        probe->lastRising += by;
        probe->lastFalling += by;
    }
    mExSyncProbe.rising += pulses;
    mExSyncProbe.falling += pulses;
    if (mSettings.flashIsOn) {
        mFlashProbe.rising += pulses;
        mFlashProbe.falling += pulses;
    }
}

uint64_t TriggerBlock::skippable() const {
    // The last pulses before the limit are played.
    constexpr uint64_t kPlayed = 4;
    const uint64_t left = std::min(mExSync.left().value_or(std::numeric_limits<uint64_t>::max()),
                                   mFlash.left().value_or(std::numeric_limits<uint64_t>::max()));
    return left > kPlayed ? left - kPlayed : 0;
}

}  // namespace simulation
