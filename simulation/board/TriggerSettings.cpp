#include "simulation/board/TriggerSettings.h"

#include <algorithm>

namespace simulation {

namespace {

/// The registers in the order of the table.
enum Index : size_t {
    kHdPeriod,
    kExSyncOn,
    kExSyncMode,
    kExSyncHigh,
    kExSyncLow,
    kExSyncDelay,
    kExSyncHighActive,
    kFlashEnable,
    kFlashHighActive,
    kFlashDelay,
    kFlashLow,
    kFlashIsProgrammed,
    kInSelect,
    kInLowActive,
    kSwEnable,
    kSwSet,
    kQueueEnable,
    kTriggersTillStop,
    kCount,
};
static_assert(kCount == TriggerSettings::kRegisters.size());

TriggerSettings::Maker makerOf(uint64_t mode) {
    using Maker = TriggerSettings::Maker;
    if (mode > 1) return Maker::nothing;
    return mode == 0 ? Maker::generator : Maker::trigger;
}

TriggerSettings::Source sourceOf(bool switchIsOn, bool queueIsOn) {
    using Source = TriggerSettings::Source;
    if (switchIsOn) return Source::imageSwitch;
    return queueIsOn ? Source::queue : Source::input;
}

}  // namespace

TriggerSettings TriggerSettings::of(const Values& values) {
    // No design has times of more than 32 bits or a time base of more than 16; the low bits of a wider register count.
    const auto count = [&](Index i) { return static_cast<int64_t>(values[i] & 0xFFFFFFFF); };
    const auto isSet = [&](Index i) { return values[i] != 0; };

    TriggerSettings settings;
    settings.unit =
        kClock * std::max(static_cast<int64_t>(values[kHdPeriod] & 0xFFFF) + 1, static_cast<int64_t>(kFewestClocks));
    settings.isOn = isSet(kExSyncOn);
    settings.maker = makerOf(values[kExSyncMode]);
    settings.source = sourceOf(isSet(kSwEnable), isSet(kQueueEnable));
    settings.cycle = settings.unit * (count(kExSyncHigh) + 1);
    // A pulse does not outlast its cycle.
    const BoardTime exposure = std::min(settings.unit * (count(kExSyncLow) + 1), settings.cycle);
    settings.exSync = {settings.unit * count(kExSyncDelay), exposure};
    const BoardTime duration = isSet(kFlashIsProgrammed) ? settings.unit * (count(kFlashLow) + 1) : exposure;
    settings.flash = {settings.unit * count(kFlashDelay), duration};
    settings.exSyncHighActive = isSet(kExSyncHighActive);
    settings.flashIsOn = isSet(kFlashEnable);
    settings.flashHighActive = isSet(kFlashHighActive);
    settings.input = static_cast<unsigned>(values[kInSelect] & 7);
    settings.inputLowActive = isSet(kInLowActive);
    settings.switchIsSet = isSet(kSwSet);
    settings.queueIsOn = isSet(kQueueEnable);
    if (isSet(kTriggersTillStop)) settings.limit = values[kTriggersTillStop] - 1;
    return settings;
}

}  // namespace simulation
