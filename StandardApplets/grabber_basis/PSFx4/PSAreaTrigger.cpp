#include "StandardApplets/grabber_basis/PSFx4/PSAreaTrigger.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/PSFx4/AreaTriggerTables.h"
#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/RSFx4/TriggerConversions.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

using namespace area_trigger;

constexpr uint32_t kSmallestTimeBaseCount = 30;
constexpr double kDefaultTimeBaseUs = 10.0;
constexpr double kDefaultFramesPerSec = 8.0;
constexpr int kDefaultExposureUs = 4000;
constexpr double kDefaultFlashTimeUs = 4000.0;
constexpr int kMaxTriggerPulses = 2000000000;

constexpr unsigned kOn = 1;
constexpr unsigned kSendReads = 1;

/// A time or rate: a double that is stored as the hardware produces it.
struct Time {
    int id;
    double (RSAreaTrigger::*get)(unsigned port) const;
    int (RSAreaTrigger::*set)(unsigned port, double value);
};
constexpr std::array kTimes{
    Time{FG_FRAMESPERSEC,     &RSAreaTrigger::getFramesPerSec,     &RSAreaTrigger::setFramesPerSec    },
    Time{FG_EXSYNCDELAY,      &RSAreaTrigger::getExSyncDelay,      &RSAreaTrigger::setExSyncDelay     },
    Time{FG_STROBEPULSEDELAY, &RSAreaTrigger::getStrobePulseDelay, &RSAreaTrigger::setStrobePulseDelay},
    Time{FG_FLASHTIME,        &RSAreaTrigger::getFlashTime,        &RSAreaTrigger::setFlashTime       },
    Time{FG_PRESCALER,        &RSAreaTrigger::getHdSync,           &RSAreaTrigger::setHdSync          },
};
static_assert(idsAreUnique(kTimes));

template <auto Getter>
unsigned read(const RSAreaTrigger& trigger, unsigned port) {
    return static_cast<unsigned>((trigger.*Getter)(port));
}

/// A switch (\p Value bool) is on for every number but 0.
template <class Value, int (RSAreaTrigger::*Setter)(unsigned, Value)>
int write(RSAreaTrigger& trigger, unsigned port, unsigned value) {
    return (trigger.*Setter)(port, static_cast<Value>(value));
}

/// A 32-bit number that is stored as it comes.
struct Number {
    int id;
    unsigned (*get)(const RSAreaTrigger& trigger, unsigned port);
    int (*set)(RSAreaTrigger& trigger, unsigned port, unsigned value);
};
// clang-format off
constexpr std::array kNumbers{
    Number{FG_TRIGGERMODE, &read<&RSAreaTrigger::getTriggerMode>, &write<unsigned, &RSAreaTrigger::setTriggerMode>},
    Number{FG_TRIGGERINSRC, &read<&RSAreaTrigger::getTrgInSrc>, &write<unsigned, &RSAreaTrigger::setTrgInSrc>},
    Number{FG_TRIGGERINPOLARITY, &read<&RSAreaTrigger::getTrgInPolarity>, &write<unsigned, &RSAreaTrigger::setTrgInPolarity>},
    Number{FG_EXSYNCINVERT, &read<&RSAreaTrigger::getExSyncInvert>, &write<bool, &RSAreaTrigger::setExSyncInvert>},
    Number{FG_EXSYNCPOLARITY, &read<&RSAreaTrigger::getExSyncInvert>, &write<bool, &RSAreaTrigger::setExSyncInvert>},
    Number{FG_EXSYNCON, &read<&RSAreaTrigger::getExSyncOn>, &write<bool, &RSAreaTrigger::setExSyncOn>},
    Number{FG_FLASHON, &read<&RSAreaTrigger::getFlashOn>, &write<bool, &RSAreaTrigger::setFlashOn>},
    Number{FG_FLASH_POLARITY, &read<&RSAreaTrigger::getFlashPolarity>, &write<unsigned, &RSAreaTrigger::setFlashPolarity>},
    Number{FG_LIMIT_TRIGGER_PULSES, &read<&RSAreaTrigger::getLimitTriggerPulses>, &write<int, &RSAreaTrigger::setLimitTriggerPulses>},
};
// clang-format on
static_assert(idsAreUnique(kNumbers));

/// \return the row of a parameter, or null
template <class Row, size_t N>
const Row* rowOf(const std::array<Row, N>& rows, int id) {
    const auto* found = std::find_if(rows.begin(), rows.end(), [id](const Row& row) { return row.id == id; });
    return found == rows.end() ? nullptr : found;
}

}  // namespace

PSAreaTrigger::PSAreaTrigger(Fg_StdMaster* FG_base) : RSAreaTrigger(FG_base) {
    initRegisters();
    if (mFg_Base->getIsArea(0) == 0) return;
    for (const std::span<const ParameterRow> rows : publishedTables()) createParameters(*this, rows);
}

int PSAreaTrigger::getParamFromRs(int id, void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (const Time* time = rowOf(kTimes, id); time != nullptr) {
        putValue(val, (this->*time->get)(port));
        return FG_OK;
    }
    if (const Number* number = rowOf(kNumbers, id); number != nullptr) {
        putValue(val, number->get(*this, port));
        return FG_OK;
    }
    switch (id) {
        case FG_EXPOSURE:
            putValue(val, getExposureTime(port));
            return FG_OK;
        case FG_FLASHTIME_SYNC:
            putValue(val, unsigned{getFlashTimeIsSynchronous(port)});
            return FG_OK;
        case FG_SENDSOFTWARETRIGGER:
            putValue(val, kSendReads);
            return FG_OK;
        case FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL:
            putValue(val, getSwTrgQueueFillLevel(port));
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

int PSAreaTrigger::setParamToRs(int id, const void* val, unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (id == FG_SENDSOFTWARETRIGGER) return sendSoftwareTrigger(port, takeValue<unsigned>(val));
    const int result = storeValue(id, val, port);
    // No limit and no access bit depends on these two.
    if (id == FG_EXSYNCON || id == FG_FLASHON) return result;
    setLimits(port, false);
    setFlags(port);
    return result;
}

int PSAreaTrigger::storeValue(int id, const void* val, unsigned port) {
    if (const Time* time = rowOf(kTimes, id); time != nullptr) {
        if (id == FG_FLASHTIME) setFlashTimeIsSynchronous(port, false);
        return (this->*time->set)(port, snapped(id, takeValue<double>(val), port));
    }
    if (const Number* number = rowOf(kNumbers, id); number != nullptr) {
        return number->set(*this, port, takeValue<unsigned>(val));
    }
    switch (id) {
        case FG_EXPOSURE:
            storeExposure(port, takeValue<unsigned>(val));
            return FG_OK;
        case FG_FLASHTIME_SYNC:
            storeFlashTimeSync(port, takeValue<unsigned>(val) == kOn);
            return FG_OK;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

void PSAreaTrigger::storeExposure(unsigned port, unsigned us) {
    unsigned exposureUs = 0;
    std::ignore =
        convertRegValueToUserValue(FG_EXPOSURE, convertUserValueToRegValue(FG_EXPOSURE, us, port), &exposureUs, port);
    setExposureTime(port, exposureUs);
    // The flash follows what was asked for: its time need not be a whole number of microseconds.
    if (getFlashTimeIsSynchronous(port)) setFlashTime(port, snapped(FG_FLASHTIME, us, port));
}

void PSAreaTrigger::storeFlashTimeSync(unsigned port, bool isSynchronous) {
    setFlashTimeIsSynchronous(port, isSynchronous);
    if (isSynchronous) setFlashTime(port, snapped(FG_FLASHTIME, getExposureTime(port), port));
}

/// \return the value that the hardware produces for \p value
double PSAreaTrigger::snapped(int id, double value, unsigned port) const {
    double result = value;
    std::ignore = convertRegValueToUserValue(id, convertUserValueToRegValue(id, value, port), &result, port);
    return result;
}

std::vector<std::span<const ParameterRow>> PSAreaTrigger::publishedTables() const {
    std::vector<std::span<const ParameterRow>> tables{kParameters};
    if (isLimitTriggerPulsesAvailable(0)) tables.emplace_back(kPulseLimitParameters);
    if (isFlashTimeAvailable(0)) tables.emplace_back(kFlashTimeParameters);
    if (isSoftwareTriggerQueueAvailable(0)) {
        tables.emplace_back(kQueueParameters);
    } else {
        tables.emplace_back(kPulseParameters);
    }
    return tables;
}

void PSAreaTrigger::setDescriptions() {
    for (const std::span<const ParameterRow> rows : publishedTables()) publishDescriptions(*header, rows);
}

bool PSAreaTrigger::bothPortsHaveFlashTime() const { return isFlashTimeAvailable(0) && isFlashTimeAvailable(1); }

// ---- Limits. Each is computed when its turn comes: a default that is applied changes those after it.

void PSAreaTrigger::setLimits(unsigned int port, bool updateDefault) {
    if (!isPort(port)) return;
    const int p = static_cast<int>(port);
    const auto setEntries = [&](int id, std::span<const EnumField> entries, int defaultValue) {
        header->setLimits(id, p, entries.data(), static_cast<int>(entries.size()), defaultValue, updateDefault);
    };
    setTimeBaseLimits(port, updateDefault);
    setFrameRateLimits(port, updateDefault);
    setTriggerModeLimits(port, updateDefault);
    setEntries(FG_EXSYNCON, kOnOff, 0);
    setExposureLimits(port, updateDefault);
    setEntries(FG_TRIGGERINSRC, kInputs, 0);
    setEntries(FG_TRIGGERINPOLARITY, kInputPolarities, 0);
    setDelayLimits(FG_EXSYNCDELAY, port, updateDefault);
    setEntries(FG_EXSYNCINVERT, kOnOff, 0);
    setEntries(FG_EXSYNCPOLARITY, kOutputPolarities, 0);
    if (isFlashTimeAvailable(port)) {
        setFlashTimeLimits(port, updateDefault);
        setEntries(FG_FLASHTIME_SYNC, kOnOff, 1);
    }
    setEntries(FG_FLASHON, kOnOff, 0);
    setDelayLimits(FG_STROBEPULSEDELAY, port, updateDefault);
    setEntries(FG_FLASH_POLARITY, kOutputPolarities, 0);
    if (isLimitTriggerPulsesAvailable(0)) {
        header->setLimits(FG_LIMIT_TRIGGER_PULSES, p, 0, kMaxTriggerPulses, 1, 0, updateDefault);
    }
    setSoftwareTriggerLimits(port, updateDefault);
}

void PSAreaTrigger::setTriggerModeLimits(unsigned port, bool updateDefault) {
    const bool hasQueue = isSoftwareTriggerQueueAvailable(port);
    std::vector<EnumField> modes;
    std::copy_if(kModes.begin(), kModes.end(), std::back_inserter(modes), [&](const EnumField& mode) {
        if (mode.value == GRABBER_CONTROLLED_SYNCHRON) return IsTwoCamModel();
        return mode.value != ASYNC_SOFTWARE_TRIGGER_QUEUED || hasQueue;
    });
    header->setLimits(FG_TRIGGERMODE, static_cast<int>(port), modes.data(), static_cast<int>(modes.size()), FREE_RUN,
                      updateDefault);
}

void PSAreaTrigger::setTimeBaseLimits(unsigned port, bool updateDefault) {
    const double clockMHz = mBoard->getPlxClk();
    const double smallest = std::max({
        countToTimeBase(kSmallestTimeBaseCount, clockMHz),
        getHdSyncMinDep(FG_FRAMESPERSEC, port),
        getHdSyncMinDep(FG_EXPOSURE, port),
        getHdSyncMinDep(FG_STROBEPULSEDELAY, port),
        getHdSyncMinDep(FG_EXSYNCDELAY, port),
    });
    const double range = numberOfCounts(getParamRegisterWidth(FG_PRESCALER, port)) / clockMHz;
    const double largest = std::min<double>(getExposureTime(port), range);
    header->setLimits(FG_PRESCALER, static_cast<int>(port), snapped(FG_PRESCALER, smallest, port),
                      snapped(FG_PRESCALER, largest, port), 2 / clockMHz, kDefaultTimeBaseUs, updateDefault);
}

void PSAreaTrigger::setFrameRateLimits(unsigned port, bool updateDefault) {
    const double timeBaseUs = getHdSync(port);
    const double smallest = smallestFrameRate(getParamRegisterWidth(FG_FRAMESPERSEC, port), timeBaseUs);
    const double largest = largestFrameRate(getExposureTime(port), timeBaseUs);
    header->setLimits(FG_FRAMESPERSEC, static_cast<int>(port), smallest, largest, smallest, kDefaultFramesPerSec,
                      updateDefault);
}

void PSAreaTrigger::setExposureLimits(unsigned port, bool updateDefault) {
    const double timeBaseUs = getHdSync(port);
    const unsigned largest =
        largestExposureUs(getFramesPerSec(port), getParamRegisterWidth(FG_EXPOSURE, port), timeBaseUs);
    header->setLimits(FG_EXPOSURE, static_cast<int>(port), smallestExposureUs(timeBaseUs), static_cast<int>(largest), 1,
                      kDefaultExposureUs, updateDefault);
}

void PSAreaTrigger::setDelayLimits(int id, unsigned port, bool updateDefault) {
    const double timeBaseUs = getHdSync(port);
    const double largest = (numberOfCounts(getParamRegisterWidth(id, port)) - 1) * timeBaseUs;
    header->setLimits(id, static_cast<int>(port), 0.0, largest, timeBaseUs, 0.0, updateDefault);
}

void PSAreaTrigger::setFlashTimeLimits(unsigned port, bool updateDefault) {
    const double timeBaseUs = getHdSync(port);
    const double largest = numberOfCounts(getParamRegisterWidth(FG_FLASHTIME, port)) * timeBaseUs;
    header->setLimits(FG_FLASHTIME, static_cast<int>(port), 2 * timeBaseUs, largest, 2 / mBoard->getPlxClk(),
                      kDefaultFlashTimeUs, updateDefault);
}

void PSAreaTrigger::setSoftwareTriggerLimits(unsigned port, bool updateDefault) {
    const int p = static_cast<int>(port);
    if (!isSoftwareTriggerQueueAvailable(port)) {
        // Never applied: the default would be a trigger.
        header->setLimits(FG_SENDSOFTWARETRIGGER, p, kSend.data(), static_cast<int>(kSend.size()), 0, false);
        return;
    }
    const int capacity = static_cast<int>(queueCapacity(port));
    const bool isQueued = getTriggerMode(port) == ASYNC_SOFTWARE_TRIGGER_QUEUED;
    header->setLimits(FG_SENDSOFTWARETRIGGER, p, 1, isQueued ? capacity : 1, 1, 1, updateDefault);
    header->setLimits(FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, p, 0, capacity, 1, 0, updateDefault);
}

// ---- Flags and groups

void PSAreaTrigger::setFlags(unsigned int port) {
    if (!isPort(port)) return;
    const int p = static_cast<int>(port);
    const ModeColumn column = kColumns[static_cast<size_t>(getTriggerMode(port))];
    const int inConfigFiles = mFg_Base->getIsArea(p) != 0 ? 1 : 0;
    const auto publish = [&](std::span<const ModeFlagRow> rows) {
        for (const ModeFlagRow& row : rows) {
            header->setFlags(row.id, p, row.access[column], row.range, row.visibility, row.isSaved ? inConfigFiles : 0);
        }
    };
    publish(kFlags);
    if (isLimitTriggerPulsesAvailable(0)) publish(kPulseLimitFlags);
    if (bothPortsHaveFlashTime()) publish(kFlashTimeFlags);
    if (isSoftwareTriggerQueueAvailable(port)) {
        publish(kQueueFlags);
    } else {
        publish(kPulseFlags);
    }
}

void PSAreaTrigger::setRegisterInfoTree(unsigned int port) {
    const int p = static_cast<int>(port);
    if (mFg_Base->getIsArea(p) == 0) return;
    RegisterInfo* top = publishGroup(*header, port, nullptr, "Trigger / Exsync", kTopGroup);
    if (top == nullptr) return;
    if (isLimitTriggerPulsesAvailable(0)) header->setGroup(FG_LIMIT_TRIGGER_PULSES, p, top);
    RegisterInfo* software = publishGroup(*header, port, top, "Software Trigger", kSoftwareGroup);
    if (isSoftwareTriggerQueueAvailable(port)) header->setGroup(FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, p, software);
    publishGroup(*header, port, top, "Trigger Input", kInputGroup);
    publishGroup(*header, port, top, "Exsync Output", kExSyncGroup);
    const bool hasFlashTime = bothPortsHaveFlashTime();
    publishGroup(*header, port, top, "Flash",
                 hasFlashTime ? std::span<const int>(kFlashGroupWithTime) : std::span<const int>(kFlashGroup));
    publishGroup(*header, port, top, "Accuracy", kAccuracyGroup);
}

const char* PSAreaTrigger::getDocModuleURL(int /*id*/) { return "feature_blocks/PSTrigger/PSAreaTrigger.html"; }
