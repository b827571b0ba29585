#include "simulation/board/Disturbances.h"

#include <chrono>
#include <string>
#include <thread>

namespace simulation {

namespace {

constexpr double kChances = 4294967296.0;  // 2^32

/// A sleeping thread wakes late by about this much; the rest of a delay it spins.
constexpr auto kSpinTime = std::chrono::microseconds(200);

/// A number of 32 bits that looks like chance and is the same for every run.
uint64_t chanceOf(uint64_t frame, uint32_t seed) {
    uint64_t bits = frame + (uint64_t{seed} << 32U) + 0x9E37'79B9'7F4A'7C15U;
    bits = (bits ^ (bits >> 30U)) * 0xBF58'476D'1CE4'E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D0'49BB'1331'11EBU;
    return (bits ^ (bits >> 31U)) >> 32U;
}

/// Written so that "not a number" is outside as well.
bool isWithin(double value, double most) { return value >= 0 && value <= most; }

}  // namespace

template <class Value>
void Disturbances::set(Value Settings::*setting, Value value) {
    const std::lock_guard lock(mMutex);
    mSettings.*setting = value;
}

Disturbances::Settings Disturbances::settings() const {
    const std::lock_guard lock(mMutex);
    return mSettings;
}

Outcome Disturbances::setDrop(double percent, uint32_t seed) {
    if (!isWithin(percent, 100)) {
        return {kBadSetting, std::to_string(percent) + " percent of the frames cannot be dropped: it is 0 to 100"};
    }
    const std::lock_guard lock(mMutex);
    mSettings.dropLimit = static_cast<uint64_t>(percent / 100 * kChances);
    mSettings.dropSeed = seed;
    return {};
}

Outcome Disturbances::setGap(TransferGap Settings::*gap, double afterMs, double lengthMs) {
    if (!isWithin(afterMs, kLongestGapMs) || !isWithin(lengthMs, kLongestGapMs)) {
        return {kBadSetting, "a gap of " + std::to_string(lengthMs) + " ms after " + std::to_string(afterMs) +
                                 " ms cannot be had: each is 0 to 1000000000"};
    }
    const auto ns = [](double ms) { return BoardTime(static_cast<int64_t>(ms * 1e6)); };
    set(gap, {ns(afterMs), ns(lengthMs)});
    return {};
}

Outcome Disturbances::setLinkGap(double afterMs, double lengthMs) { return setGap(&Settings::link, afterMs, lengthMs); }

Outcome Disturbances::setDmaGap(double afterMs, double lengthMs) { return setGap(&Settings::dma, afterMs, lengthMs); }

void Disturbances::holdDma(bool isHeld) { set(&Settings::dmaIsHeld, isHeld); }

Outcome Disturbances::setFirstTag(uint32_t tag) {
    if (tag > kLargestTag) {
        return {kBadSetting, "a first tag of " + std::to_string(tag) + " cannot be had: it is 0 to 2147483647"};
    }
    set(&Settings::firstTag, tag);
    return {};
}

Outcome Disturbances::setFirstTimeStamp(uint64_t ns) {
    set(&Settings::firstTimeStamp, ns);
    return {};
}

Outcome Disturbances::setRegisterDelay(double us) {
    if (!isWithin(us, kLongestDelayUs)) {
        return {kBadSetting, "a register delay of " + std::to_string(us) + " us cannot be had: it is 0 to 1000000"};
    }
    mRegisterDelay = BoardTime(static_cast<int64_t>(us * 1000));
    return {};
}

bool Disturbances::linkIsDown(BoardTime elapsed) const { return settings().link.covers(elapsed); }

Loss Disturbances::lossOf(uint64_t frame, BoardTime elapsed) const {
    const Settings now = settings();
    // A frame that gets lost before the DMA is not there to be held.
    if (chanceOf(frame, now.dropSeed) < now.dropLimit) return Loss::dropped;
    return now.dmaIsHeld || now.dma.covers(elapsed) ? Loss::held : Loss::none;
}

uint32_t Disturbances::tagOf(uint64_t frame) const {
    return static_cast<uint32_t>((settings().firstTag + frame - 1) & kLargestTag);
}

uint64_t Disturbances::timeStampOf(BoardTime time) const {
    return settings().firstTimeStamp + static_cast<uint64_t>(time.count());
}

void Disturbances::delayAccess() const {
    const BoardTime delay = mRegisterDelay;
    if (delay == BoardTime(0)) return;
    const auto due = std::chrono::steady_clock::now() + delay;
    std::this_thread::sleep_until(due - kSpinTime);
    while (std::chrono::steady_clock::now() < due) {
    }
}

}  // namespace simulation
