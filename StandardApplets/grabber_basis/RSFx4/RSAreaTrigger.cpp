#include "StandardApplets/grabber_basis/RSFx4/RSAreaTrigger.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <tuple>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/RSFx4/TriggerConversions.h"
#include "StandardApplets/grabber_basis/Truncation.h"
#include "StandardApplets/grabber_basis/ValueBorder.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr double kIndependent = -1.0;
constexpr unsigned kLargestUnqueued = 6;
constexpr int kFlashPolarityParameter = 8730;  // second identifier of the flash polarity
constexpr unsigned kExSyncByGenerator = 0;
constexpr unsigned kExSyncByTrigger = 1;
constexpr std::chrono::microseconds kArmingTime{1000};
constexpr std::array<unsigned, 4> kSoftwarePulse{0, 1, 1, 0};

// clang-format off
constexpr std::array kWholeBlock{
    FG_PRESCALER, FG_TRIGGERINSRC, FG_EXPOSURE, FG_STROBEPULSEDELAY, FG_EXSYNCINVERT, kFlashPolarityParameter,
    FG_FRAMESPERSEC, FG_EXSYNCDELAY, FG_EXSYNCON, FG_TRIGGERMODE, FG_FLASHON, FG_TRIGGERINPOLARITY, FG_FLASHTIME,
    FG_LIMIT_TRIGGER_PULSES,
};
// clang-format on

/// What counts in units of the time base and is written again when that changes.
constexpr std::array kTimes{FG_FRAMESPERSEC, FG_EXPOSURE, FG_STROBEPULSEDELAY, FG_EXSYNCDELAY};

/// \return 1 for a failed write, which is what the sequences count
int failure(int result) { return result == FG_OK ? 0 : 1; }

int errorIfFailed(int result) { return result == FG_OK ? FG_OK : FG_ERROR; }

}  // namespace

// clang-format off
const std::array<RSAreaTrigger::Write, 14> RSAreaTrigger::kWrites{{
    {FG_FRAMESPERSEC, &RSAreaTrigger::wReg_ExSyncHigh,
     &RSAreaTrigger::counted<FG_FRAMESPERSEC, &PortData::v_FramesPerSec>},
    {FG_TRIGGERINSRC, &RSAreaTrigger::wReg_TrgInSelect, &RSAreaTrigger::plain<&PortData::v_TrgInSrc>},
    {FG_TRIGGERINPOLARITY, &RSAreaTrigger::wReg_TrgInPolarity, &RSAreaTrigger::plain<&PortData::v_TrgInPolarity>},
    {FG_EXSYNCINVERT, &RSAreaTrigger::wReg_ExSyncInvert, &RSAreaTrigger::plain<&PortData::v_ExSyncInvert>},
    {FG_EXSYNCPOLARITY, &RSAreaTrigger::wReg_ExSyncInvert, &RSAreaTrigger::plain<&PortData::v_ExSyncInvert>},
    {FG_EXSYNCON, &RSAreaTrigger::wReg_ExSyncOn, &RSAreaTrigger::plain<&PortData::v_ExSyncOn>},
    {FG_EXSYNCDELAY, &RSAreaTrigger::wReg_ExSyncDelay,
     &RSAreaTrigger::counted<FG_EXSYNCDELAY, &PortData::v_ExSyncDelay>},
    {FG_FLASHON, &RSAreaTrigger::mReg_StrobePulseMask, &RSAreaTrigger::plain<&PortData::v_FlashOn>},
    {FG_STROBEPULSEDELAY, &RSAreaTrigger::wReg_StrobePulseDelay,
     &RSAreaTrigger::counted<FG_STROBEPULSEDELAY, &PortData::v_flashDelay>},
    {kFlashPolarityParameter, &RSAreaTrigger::wReg_StrobePulseInvert,
     &RSAreaTrigger::plain<&PortData::v_flashPolarity>},
    {FG_FLASH_POLARITY, &RSAreaTrigger::wReg_StrobePulseInvert, &RSAreaTrigger::plain<&PortData::v_flashPolarity>},
    {FG_FLASHTIME, &RSAreaTrigger::wReg_FlashLow, &RSAreaTrigger::counted<FG_FLASHTIME, &PortData::v_flashTime>},
    {FG_LIMIT_TRIGGER_PULSES, &RSAreaTrigger::wReg_TriggersUntilStop, &RSAreaTrigger::pulsesUntilStop},
    {FG_EXPOSURE, &RSAreaTrigger::wReg_ExSyncLow, &RSAreaTrigger::counted<FG_EXPOSURE, &PortData::v_ExposureTime>},
}};

const std::array<RSAreaTrigger::Width, 8> RSAreaTrigger::kWidths{{
    {FG_FRAMESPERSEC, &RSAreaTrigger::wReg_ExSyncHigh},
    {FG_EXSYNCDELAY, &RSAreaTrigger::wReg_ExSyncDelay},
    {FG_STROBEPULSEDELAY, &RSAreaTrigger::wReg_StrobePulseDelay},
    {FG_FLASHTIME, &RSAreaTrigger::wReg_FlashLow},
    {FG_FLASHTIME_SYNC, &RSAreaTrigger::wReg_flashTimeProgrammable},
    {FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, &RSAreaTrigger::rReg_SwTrgQueueFillLevel},
    {FG_EXPOSURE, &RSAreaTrigger::wReg_ExSyncLow},
    {FG_PRESCALER, &RSAreaTrigger::mwReg_HdPeriod},
}};
// clang-format on

RSAreaTrigger::RSAreaTrigger(Fg_StdMaster* Fg_Base) : RSMaster(Fg_Base) {}

void RSAreaTrigger::initRegisters() {
    // Only some designs have the queue and a flash duration of its own.
    const std::array rows{
        BlockRegisterRow{mwReg_MasterSync, "AATrgArea_MasterSyncA", nullptr},
        BlockRegisterRow{mwReg_HdLow, "AATrgArea_HdLow", nullptr},
        BlockRegisterRow{mwReg_HdPeriod, "AATrgArea_HdPeriod", nullptr, kRequired, kWithWidth},
        BlockRegisterRow{rReg_SwTrgBusy, "AATrg_ImgBusy", "ABTrg_ImgBusy"},
        BlockRegisterRow{rReg_SwTrgQueueFillLevel, "AATrgArea_SwTrgQueueFillLevel", "ABTrgArea_SwTrgQueueFillLevel",
                         kOptional, kWithWidth},
        BlockRegisterRow{wReg_SwTrgQueueTriggers, "AATrgArea_SwTrgQueueTriggers", "ABTrgArea_SwTrgQueueTriggers",
                         kOptional},
        BlockRegisterRow{wReg_SwTrgQueueEnable, "AATrgArea_SwTrgQueueEnable", "ABTrgArea_SwTrgQueueEnable", kOptional},
        BlockRegisterRow{wReg_FlashLow, "AATrgArea_FlashLow", "ABTrgArea_FlashLow", kOptional, kWithWidth},
        BlockRegisterRow{wReg_flashTimeProgrammable, "AAEnable_ProgFlashDuration", "ABEnable_ProgFlashDuration",
                         kOptional, kWithWidth},
        BlockRegisterRow{wReg_ExSyncHigh, "AATrgArea_ExSyncHigh", "ABTrgArea_ExSyncHigh", kRequired, kWithWidth},
        BlockRegisterRow{wReg_ExSyncInvert, "AATrg_ExSyncHighActive", "ABTrg_ExSyncHighActive"},
        BlockRegisterRow{wReg_ExSyncLow, "AATrgArea_ExSyncLow", "ABTrgArea_ExSyncLow", kRequired, kWithWidth},
        BlockRegisterRow{wReg_ExSyncMode, "AATrgArea_ExSyncMode", "ABTrgArea_ExSyncMode"},
        BlockRegisterRow{wReg_ExSyncOn, "AATrgArea_ExSyncOn", "ABTrgArea_ExSyncOn"},
        BlockRegisterRow{wReg_StrobePulseDelay, "AATrgArea_FlashDelay", "ABTrgArea_FlashDelay", kRequired, kWithWidth},
        BlockRegisterRow{mReg_StrobePulseMask, "AATrgArea_FlashEnable", "ABTrgArea_FlashEnable"},
        BlockRegisterRow{wReg_StrobePulseInvert, "AATrg_FlashHighActive", "ABTrg_FlashHighActive"},
        BlockRegisterRow{wReg_TrgInPolarity, "AATrg_ImgInLowActive", "ABTrg_ImgInLowActive"},
        BlockRegisterRow{wReg_TrgInSelect, "AATrg_ImgInSelect", "ABTrg_ImgInSelect"},
        BlockRegisterRow{wReg_TrgSwEnable, "AATrg_ImgSwEnable", "ABTrg_ImgSwEnable"},
        BlockRegisterRow{wReg_TrgSwSet, "AATrg_ImgSwSet", "ABTrg_ImgSwSet"},
        BlockRegisterRow{wReg_ExSyncDelay, "AATrgArea_ExSyncDelay", "ABTrgArea_ExSyncDelay", kRequired, kWithWidth},
        BlockRegisterRow{wReg_TriggersUntilStop, "AATrgArea_TriggersTillStop", "ABTrgArea_TriggersTillStop"},
    };
    initBlockRegisters(rows);
}

bool RSAreaTrigger::isSoftwareTriggerQueueAvailable(unsigned port) const {
    return isPort(port) && wReg_SwTrgQueueEnable.handle[port] != 0;
}

bool RSAreaTrigger::isFlashTimeAvailable(unsigned port) const {
    return isPort(port) && (wReg_flashTimeProgrammable.handle[port] > 0 || wReg_FlashLow.handle[port] > 0);
}

bool RSAreaTrigger::isLimitTriggerPulsesAvailable(unsigned port) const {
    return isPort(port) && wReg_TriggersUntilStop.handle[port] != 0;
}

int RSAreaTrigger::setTriggerMode(unsigned port, unsigned mode) {
    if (!isPort(port)) return FG_INVALID_PORT;
    const unsigned largest = isSoftwareTriggerQueueAvailable(port) ? ASYNC_SOFTWARE_TRIGGER_QUEUED : kLargestUnqueued;
    if (mode > largest) return FG_TRIGGER_MODE_MISMATCH;
    m_portdata[port].v_TrgMode = mode;
    return FG_OK;
}

int RSAreaTrigger::getTriggerMode(unsigned port) const {
    return isPort(port) ? static_cast<int>(m_portdata[port].v_TrgMode) : FG_INVALID_PORT;
}

int RSAreaTrigger::setHdSync(unsigned port, double us) {
    if (isPort(port)) mHdSync = us;
    return FG_OK;
}

bool RSAreaTrigger::getSwTrgBusy(unsigned port) {
    if (!isPort(port)) return false;
    // Exactly 1: a register that cannot be read has all bits set and does not count as busy.
    m_portdata[port].v_SwTrgBusy = mBoard->readRegister(rReg_SwTrgBusy.handle[port]) == 1;
    return m_portdata[port].v_SwTrgBusy;
}

unsigned RSAreaTrigger::getSwTrgQueueFillLevel(unsigned port) {
    if (!isPort(port)) return 0;
    const uint64_t level = mBoard->readRegister(rReg_SwTrgQueueFillLevel.handle[port]);
    m_portdata[port].v_SwTrgQueueFillLevel = static_cast<unsigned>(level);
    return m_portdata[port].v_SwTrgQueueFillLevel;
}

// ---- Conversions

uint32_t RSAreaTrigger::convertUserValueToRegValue(int parameter, double value, unsigned /*port*/) const {
    switch (parameter) {
        case FG_FRAMESPERSEC:
            return frameRateToCount(value, mHdSync);
        case FG_EXSYNCDELAY:
        case FG_STROBEPULSEDELAY:
            return delayToCount(value, mHdSync);
        case FG_FLASHTIME:
        case FG_EXPOSURE:
            return durationToCount(value, mHdSync);
        case FG_PRESCALER:
            return timeBaseToCount(value, mBoard->getPlxClk());
        default:
            return 0;
    }
}

uint32_t RSAreaTrigger::convertUserValueToRegValue(int parameter, unsigned value, unsigned port) const {
    return convertUserValueToRegValue(parameter, static_cast<double>(value), port);
}

int RSAreaTrigger::convertRegValueToUserValue(int parameter, uint32_t regValue, void* out, unsigned port) const {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (parameter) {
        case FG_FRAMESPERSEC:
            putValue(out, countToFrameRate(regValue, mHdSync));
            return FG_OK;
        case FG_EXSYNCDELAY:
        case FG_STROBEPULSEDELAY:
            putValue(out, countToDelay(regValue, mHdSync));
            return FG_OK;
        case FG_FLASHTIME:
            putValue(out, countToDuration(regValue, mHdSync));
            return FG_OK;
        case FG_EXPOSURE:
            putValue(out, countToExposureUs(regValue, mHdSync));
            return FG_OK;
        case FG_PRESCALER:
            putValue(out, countToTimeBase(regValue, mBoard->getPlxClk()));
            return FG_OK;
        case FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL:
            putValue(out, regValue);
            return FG_INVALID_ARGUMENT;
        default:
            return FG_INVALID_ARGUMENT;
    }
}

unsigned RSAreaTrigger::getParamRegisterWidth(int parameter, unsigned port) const {
    if (!isPort(port)) return 0;
    const auto* found =
        std::find_if(kWidths.begin(), kWidths.end(), [&](const Width& row) { return row.id == parameter; });
    return found == kWidths.end() ? 0 : (this->*found->reg).width[port];
}

int RSAreaTrigger::getUserRange(int parameter, void* out, unsigned port) const {
    return convertRegValueToUserValue(parameter, largestCount(getParamRegisterWidth(parameter, port)), out, port);
}

double RSAreaTrigger::getHdSyncMinDep(int parameter, unsigned port) const {
    const unsigned width = getParamRegisterWidth(parameter, port);
    const double clockMHz = mBoard->getPlxClk();
    switch (parameter) {
        case FG_FRAMESPERSEC:
            return smallestTimeBaseForFrameRate(getFramesPerSec(port), width, clockMHz);
        case FG_EXSYNCDELAY:
            return smallestTimeBaseForDelay(getExSyncDelay(port), width, clockMHz);
        case FG_STROBEPULSEDELAY:
            return smallestTimeBaseForDelay(getStrobePulseDelay(port), width, clockMHz);
        case FG_FLASHTIME:
            return smallestTimeBaseForDuration(getFlashTime(port), width, clockMHz);
        case FG_EXPOSURE:
            return smallestTimeBaseForDuration(getExposureTime(port), width, clockMHz);
        default:
            return kIndependent;
    }
}

// ---- Register writes

int RSAreaTrigger::writePort(unsigned port, const BlockRegister& reg, uint64_t value) {
    return writeHandle(reg.handle[port], value);
}

int RSAreaTrigger::writeCached(unsigned port, int parameter) {
    const auto* found =
        std::find_if(kWrites.begin(), kWrites.end(), [&](const Write& row) { return row.id == parameter; });
    if (found == kWrites.end()) return FG_OK;
    return writePort(port, this->*found->reg, (this->*found->value)(port));
}

/// \return the pulse limit as the register counts it: 0 for none, else one more
uint64_t RSAreaTrigger::pulsesUntilStop(unsigned port) const {
    const int64_t limit = m_portdata[port].v_TriggersUntilStop;
    return limit == 0 ? 0 : static_cast<uint64_t>(limit + 1);
}

int RSAreaTrigger::updateParameter(unsigned int port, int parameter) {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (parameter) {
        case FG_TRIGGERMODE:
            return updateTriggerMode(port);
        case FG_PRESCALER:
            return updateTimeBase(port);
        case FG_EXPOSURE:
            return updateExposure(port);
        case FG_FLASHTIME_SYNC:
            return updateFlashTimeSync(port);
        case FG_FRAMESPERSEC:
            return hasGenerator(m_portdata[port].v_TrgMode) ? writeCached(port, parameter) : FG_OK;
        case FG_TRIGGERINSRC:
            return errorIfFailed(writeCached(port, parameter));
        default:
            return writeCached(port, parameter);
    }
}

int RSAreaTrigger::updateAllParameters(unsigned int port) {
    if (!isPort(port)) return FG_INVALID_PORT;
    if (mFg_Base->getIsArea(static_cast<int>(port)) == 0) return FG_OK;
    int result = FG_OK;
    for (const int parameter : kWholeBlock) {
        if (updateParameter(port, parameter) < 0) result = FG_ERROR;
    }
    return result;
}

int RSAreaTrigger::updateExposure(unsigned port) {
    const PortData& data = m_portdata[port];
    if (hasGenerator(data.v_TrgMode)) return errorIfFailed(writeCached(port, FG_EXPOSURE));
    if (!isTriggered(data.v_TrgMode)) return FG_OK;
    const int low = writeCached(port, FG_EXPOSURE);
    const int high = writePort(port, wReg_ExSyncHigh, durationToHighCount(data.v_ExposureTime, mHdSync));
    return -(failure(low) + failure(high));
}

int RSAreaTrigger::updateFlashTimeSync(unsigned port) {
    const bool isSynchronous = m_portdata[port].v_flashTimeIsSynchronous;
    if (isSynchronous) std::ignore = writeCached(port, FG_FLASHTIME);
    if (wReg_flashTimeProgrammable.handle[port] <= 0) return FG_OK;
    return writePort(port, wReg_flashTimeProgrammable, isSynchronous ? 0 : 1);
}

int RSAreaTrigger::updateTimeBase(unsigned port) {
    const unsigned mode = m_portdata[port].v_TrgMode;
    if (hasGenerator(mode) || isTriggered(mode)) {
        const uint32_t period = convertUserValueToRegValue(FG_PRESCALER, mHdSync, port);
        // Signed, so that a time base of 0 or below is too short as well.
        if (int64_t{static_cast<int32_t>(period)} + 1 < static_cast<int64_t>(mHdLowLimit)) {
            return FG_TIME_BASE_TOO_SHORT;
        }
        std::ignore = writePort(port, mwReg_HdLow, truncateTo<uint32_t>(mHdLowLimit));
        std::ignore = writePort(port, mwReg_HdPeriod, period);
    }
    const bool isShared = IsTwoCamModel();
    for (unsigned p = isShared ? 0 : port; p < (isShared ? kPorts : port + 1); ++p) {
        for (const int parameter : kTimes) std::ignore = updateParameter(p, parameter);
    }
    return FG_OK;
}

// ---- Mode changes: ExSync is off while they last

int RSAreaTrigger::updateTriggerMode(unsigned port) {
    const unsigned mode = m_portdata[port].v_TrgMode;
    if (mode == FREE_RUN) return errorIfFailed(writePort(port, wReg_ExSyncOn, 0));
    if (hasGenerator(mode)) return setUpGenerator(port);
    return isTriggered(mode) ? setUpTrigger(port) : FG_ERROR;
}

/// \return minus the number of failed writes, those of the nested updates apart
int RSAreaTrigger::setUpGenerator(unsigned port) {
    for (const int parameter : {FG_PRESCALER, FG_EXPOSURE, FG_FRAMESPERSEC}) {
        std::ignore = updateParameter(port, parameter);
    }
    int failures = failure(writePort(port, wReg_ExSyncOn, 0));
    failures += failure(writePort(port, wReg_TrgSwEnable, 0));
    failures += failure(writeMasterSync(port));
    return finishSetUp(port, kExSyncByGenerator) - failures;
}

/// \return as setUpGenerator(); the writes that arm the software trigger do not count either
int RSAreaTrigger::setUpTrigger(unsigned port) {
    for (const int parameter : {FG_PRESCALER, FG_EXPOSURE}) std::ignore = updateParameter(port, parameter);
    int failures = failure(writePort(port, wReg_ExSyncOn, 0));
    failures += failure(writeMasterSync(port));
    if (m_portdata[port].v_TrgMode == ASYNC_SOFTWARE_TRIGGER) {
        armSoftwareTrigger(port);
    } else {
        std::ignore = writePort(port, wReg_TrgSwEnable, 0);
    }
    return finishSetUp(port, kExSyncByTrigger) - failures;
}

int RSAreaTrigger::finishSetUp(unsigned port, unsigned exSyncMode) {
    int failures = failure(writePort(port, wReg_ExSyncMode, exSyncMode));
    failures += failure(writeQueueEnable(port));
    failures += failure(writeCached(port, FG_EXSYNCON));
    return -failures;
}

int RSAreaTrigger::writeMasterSync(unsigned port) {
    if (!IsTwoCamModel()) return FG_OK;
    const bool isMaster = m_portdata[port].v_TrgMode == GRABBER_CONTROLLED_SYNCHRON;
    // The generator that drives both ports is port A's.
    if (isMaster && getActivePort() != 0) return FG_OK;
    return writePort(port, mwReg_MasterSync, isMaster ? 1 : 0);
}

int RSAreaTrigger::writeQueueEnable(unsigned port) {
    if (!isSoftwareTriggerQueueAvailable(port)) return FG_OK;
    const bool isQueued = m_portdata[port].v_TrgMode == ASYNC_SOFTWARE_TRIGGER_QUEUED;
    return writePort(port, wReg_SwTrgQueueEnable, isQueued ? 1 : 0);
}

void RSAreaTrigger::armSoftwareTrigger(unsigned port) {
    std::ignore = writePort(port, wReg_TrgSwSet, 0);
    std::ignore = writePort(port, wReg_TrgSwEnable, 1);
    std::ignore = writePort(port, wReg_TrgSwSet, 0);
    std::this_thread::sleep_for(kArmingTime);
}

// ---- Software triggers

int RSAreaTrigger::sendSoftwareTrigger(unsigned port, unsigned value) {
    if (!isPort(port)) return FG_INVALID_PORT;
    switch (m_portdata[port].v_TrgMode) {
        case ASYNC_SOFTWARE_TRIGGER:
            return pulseSoftwareTrigger(port);
        case ASYNC_SOFTWARE_TRIGGER_QUEUED:
            return queueSoftwareTriggers(port, value);
        default:
            return FG_TRIGGER_MODE_MISMATCH;
    }
}

int RSAreaTrigger::pulseSoftwareTrigger(unsigned port) {
    if (getSwTrgBusy(port)) return FG_SOFTWARE_TRIGGER_BUSY;
    for (const unsigned level : kSoftwarePulse) std::ignore = writePort(port, wReg_TrgSwSet, level);
    return FG_OK;
}

unsigned RSAreaTrigger::queueCapacity(unsigned port) const {
    unsigned capacity = 0;
    // Not a conversion of a user value, and answered as such; the count is written all the same.
    std::ignore = getUserRange(FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, &capacity, port);
    return capacity;
}

int RSAreaTrigger::queueSoftwareTriggers(unsigned port, unsigned value) {
    const unsigned fillLevel = getSwTrgQueueFillLevel(port);
    if (queueCapacity(port) - fillLevel < value) return FG_SOFTWARE_TRIGGER_BUSY;
    const bool isBusy = getSwTrgBusy(port);
    if (writePort(port, wReg_SwTrgQueueTriggers, value) != FG_OK) return kQueueWriteFailed;
    return fillLevel == 0 && !isBusy ? FG_OK : kTriggersQueued;
}
