#pragma once

#include <array>
#include <cstdint>

#include "StandardApplets/grabber_basis/Ports.h"
#include "StandardApplets/grabber_basis/RSFx4/RSMaster.h"
#include "StandardApplets/grabber_basis/RSFx4/TriggerModes.h"

/// Results of a software trigger beside the result codes.
constexpr int kTriggersQueued = 8803;  ///< accepted behind others or while the block is busy
constexpr int kQueueWriteFailed = 1;   ///< the queue's register could not be written

/// Register side of the area trigger, which makes the ExSync that starts each exposure and the flash: by itself at a
/// frame rate, on a trigger input, or on software triggers. Caches the values per port, converts them to counts of
/// the time base, which both ports share, and writes the registers.
///
/// Software trigger queue, flash duration and pulse limit exist where the design has their registers. Each port
/// writes its own values: a camera on both connectors makes no difference here.
class RSAreaTrigger : public RSMaster {
public:
    explicit RSAreaTrigger(Fg_StdMaster* Fg_Base);

    /// Looks the block's registers up. Missing ones of queue and flash duration do not count for the init status.
    void initRegisters();

    /// \name Optional features; none on a port that does not exist
    /// @{
    [[nodiscard]] bool isSoftwareTriggerQueueAvailable(unsigned port) const;
    [[nodiscard]] bool isFlashTimeAvailable(unsigned port) const;
    [[nodiscard]] bool isLimitTriggerPulsesAvailable(unsigned port) const;
    /// @}

    /// \name Cached values
    /// Setters store and write no register. On a port that does not exist they store nothing and answer
    /// FG_INVALID_PORT, FG_INVALID_ARGUMENT (setExSyncInvert) or 0 (the last group); getters read 0 there.
    /// @{
    /// \return 0; FG_TRIGGER_MODE_MISMATCH for a mode above 7, and for the queued one without a queue
    int setTriggerMode(unsigned port, unsigned mode);
    /// \return the mode, or FG_INVALID_PORT
    [[nodiscard]] int getTriggerMode(unsigned port) const;
    int setExposureTime(unsigned port, unsigned us) { return store(port, &PortData::v_ExposureTime, us); }
    int setTrgInSrc(unsigned port, unsigned input) { return store(port, &PortData::v_TrgInSrc, input); }
    int setTrgInPolarity(unsigned port, unsigned isLow) { return store(port, &PortData::v_TrgInPolarity, isLow); }
    int setFramesPerSec(unsigned port, double hz) { return store(port, &PortData::v_FramesPerSec, hz); }
    int setStrobePulseDelay(unsigned port, double us) { return store(port, &PortData::v_flashDelay, us); }
    int setFlashTime(unsigned port, double us) { return store(port, &PortData::v_flashTime, us); }
    int setExSyncOn(unsigned port, bool on) { return store(port, &PortData::v_ExSyncOn, on); }
    int setFlashOn(unsigned port, bool on) { return store(port, &PortData::v_FlashOn, on); }
    int setExSyncInvert(unsigned port, bool on) {
        return store(port, &PortData::v_ExSyncInvert, on, FG_INVALID_ARGUMENT);
    }

    int setHdSync(unsigned port, double us);
    int setExSyncDelay(unsigned port, double us) { return store(port, &PortData::v_ExSyncDelay, us, FG_OK); }
    int setFlashPolarity(unsigned port, unsigned isHigh) {
        return store(port, &PortData::v_flashPolarity, isHigh, FG_OK);
    }
    int setFlashTimeIsSynchronous(unsigned port, bool on) {
        return store(port, &PortData::v_flashTimeIsSynchronous, on, FG_OK);
    }
    int setLimitTriggerPulses(unsigned port, int pulses) {
        return store(port, &PortData::v_TriggersUntilStop, pulses, FG_OK);
    }

    [[nodiscard]] unsigned getExposureTime(unsigned port) const { return load(port, &PortData::v_ExposureTime); }
    [[nodiscard]] unsigned getTrgInSrc(unsigned port) const { return load(port, &PortData::v_TrgInSrc); }
    [[nodiscard]] unsigned getTrgInPolarity(unsigned port) const { return load(port, &PortData::v_TrgInPolarity); }
    [[nodiscard]] double getFramesPerSec(unsigned port) const { return load(port, &PortData::v_FramesPerSec); }
    [[nodiscard]] double getStrobePulseDelay(unsigned port) const { return load(port, &PortData::v_flashDelay); }
    [[nodiscard]] double getFlashTime(unsigned port) const { return load(port, &PortData::v_flashTime); }
    [[nodiscard]] bool getExSyncOn(unsigned port) const { return load(port, &PortData::v_ExSyncOn); }
    [[nodiscard]] bool getFlashOn(unsigned port) const { return load(port, &PortData::v_FlashOn); }
    [[nodiscard]] bool getExSyncInvert(unsigned port) const { return load(port, &PortData::v_ExSyncInvert); }
    [[nodiscard]] double getHdSync(unsigned /*port*/) const { return mHdSync; }
    [[nodiscard]] double getExSyncDelay(unsigned port) const { return load(port, &PortData::v_ExSyncDelay); }
    [[nodiscard]] unsigned getFlashPolarity(unsigned port) const { return load(port, &PortData::v_flashPolarity); }
    [[nodiscard]] bool getFlashTimeIsSynchronous(unsigned port) const {
        return load(port, &PortData::v_flashTimeIsSynchronous);
    }
    [[nodiscard]] int getLimitTriggerPulses(unsigned port) const { return load(port, &PortData::v_TriggersUntilStop); }
    /// @}

    /// \name Values read from the hardware at the call; false and 0 on a port that does not exist
    /// @{
    bool getSwTrgBusy(unsigned port);
    unsigned getSwTrgQueueFillLevel(unsigned port);
    /// @}

    /// \name Conversions under the present time base
    /// @{
    /// \return the register value; 0 for a parameter that is not converted
    [[nodiscard]] uint32_t convertUserValueToRegValue(int parameter, double value, unsigned port) const;
    [[nodiscard]] uint32_t convertUserValueToRegValue(int parameter, unsigned value, unsigned port) const;
    /// Puts the user value into \p out: an unsigned number for FG_EXPOSURE and the queue's fill level, a double for
    /// the others.
    /// \return 0; FG_INVALID_ARGUMENT for a parameter that is not converted, and, its count written all the same,
    ///         for the fill level
    int convertRegValueToUserValue(int parameter, uint32_t regValue, void* out, unsigned port) const;
    /// \return width in bits of the register behind a parameter; 0 without one
    [[nodiscard]] unsigned getParamRegisterWidth(int parameter, unsigned port) const;
    /// Puts the user value of the largest register value into \p out: the longest time, or the lowest frame rate.
    /// \return as convertRegValueToUserValue()
    int getUserRange(int parameter, void* out, unsigned port) const;
    /// \return the time base (us) below which the parameter's present value would not fit its register; -1 for a
    ///         parameter that does not depend on the time base
    [[nodiscard]] double getHdSyncMinDep(int parameter, unsigned port) const;
    /// @}

    /// \name Register writes
    /// @{
    /// Writes what belongs to a parameter in the port's trigger mode; 0 for a parameter without register.
    /// \return FG_INVALID_PORT; the write's code; FG_ERROR or minus the number of failed writes where several are
    ///         made; FG_TIME_BASE_TOO_SHORT, with nothing written, for FG_PRESCALER
    int updateParameter(unsigned int port, int parameter) override;
    /// Writes the whole block of an area-scan port, whatever fails.
    /// \return FG_ERROR when something failed
    int updateAllParameters(unsigned int port) override;
    /// Sends a software trigger, or puts \p value of them into the queue; does not wait.
    /// \return 0; kTriggersQueued; kQueueWriteFailed; FG_SOFTWARE_TRIGGER_BUSY; FG_TRIGGER_MODE_MISMATCH in any
    ///         other mode; FG_INVALID_PORT
    int sendSoftwareTrigger(unsigned port, unsigned value);
    /// @}

protected:
    /// \return number of software triggers that the queue of a port holds
    [[nodiscard]] unsigned queueCapacity(unsigned port) const;

    BlockRegister mwReg_MasterSync;
    BlockRegister mwReg_HdLow;
    BlockRegister mwReg_HdPeriod;
    BlockRegister wReg_ExSyncInvert;
    BlockRegister wReg_ExSyncOn;
    BlockRegister mReg_StrobePulseMask;
    BlockRegister wReg_SwTrgQueueTriggers;
    BlockRegister wReg_SwTrgQueueEnable;
    BlockRegister rReg_SwTrgQueueFillLevel;
    BlockRegister rReg_SwTrgBusy;
    BlockRegister wReg_TrgSwEnable;
    BlockRegister wReg_TrgSwSet;
    BlockRegister wReg_FlashLow;
    BlockRegister wReg_StrobePulseDelay;
    BlockRegister wReg_StrobePulseInvert;
    BlockRegister wReg_flashTimeProgrammable;
    BlockRegister wReg_ExSyncHigh;
    BlockRegister wReg_ExSyncLow;
    BlockRegister wReg_ExSyncMode;
    BlockRegister wReg_ExSyncDelay;
    BlockRegister wReg_TriggersUntilStop;
    BlockRegister wReg_TrgInPolarity;
    BlockRegister wReg_TrgInSelect;

private:
    struct PortData {
        unsigned v_TrgMode = FREE_RUN;
        unsigned v_SwTrgQueueFillLevel = 0;  ///< as last read
        bool v_SwTrgBusy = false;            ///< as last read
        double v_flashTime = 4000.0;         ///< us
        double v_flashDelay = 0.0;           ///< us
        unsigned v_flashPolarity = 0;        ///< 0 low, 1 high
        bool v_FlashOn = false;
        bool v_flashTimeIsSynchronous = true;  ///< the flash is as long as the exposure
        unsigned v_ExposureTime = 4000;        ///< us
        bool v_ExSyncInvert = false;
        bool v_ExSyncOn = false;
        double v_ExSyncDelay = 0.0;    ///< us
        double v_FramesPerSec = 8.0;   ///< Hz
        int v_TriggersUntilStop = 0;   ///< 0 = no limit
        unsigned v_TrgInSrc = 0;       ///< input 0 to 7
        unsigned v_TrgInPolarity = 1;  ///< 0 high, 1 low
    };
    /// A register that takes one cached value.
    struct Write {
        int id;
        BlockRegister RSAreaTrigger::*reg;
        uint64_t (RSAreaTrigger::*value)(unsigned port) const;
    };
    static const std::array<Write, 14> kWrites;
    struct Width {
        int id;
        BlockRegister RSAreaTrigger::*reg;
    };
    static const std::array<Width, 8> kWidths;

    template <class Value>
    int store(unsigned port, Value PortData::*field, Value value, int refusal = FG_INVALID_PORT) {
        if (!isPort(port)) return refusal;
        m_portdata[port].*field = value;
        return FG_OK;
    }
    template <class Value>
    [[nodiscard]] Value load(unsigned port, Value PortData::*field) const {
        return isPort(port) ? m_portdata[port].*field : Value{};
    }
    /// The cached value as it stands.
    template <auto Field>
    [[nodiscard]] uint64_t plain(unsigned port) const {
        return static_cast<uint64_t>(m_portdata[port].*Field);
    }
    /// The cached value in units of the time base.
    template <int Id, auto Field>
    [[nodiscard]] uint64_t counted(unsigned port) const {
        return convertUserValueToRegValue(Id, m_portdata[port].*Field, port);
    }
    [[nodiscard]] uint64_t pulsesUntilStop(unsigned port) const;

    int writePort(unsigned port, const BlockRegister& reg, uint64_t value);
    int writeCached(unsigned port, int parameter);
    int updateExposure(unsigned port);
    int updateFlashTimeSync(unsigned port);
    int updateTimeBase(unsigned port);
    int updateTriggerMode(unsigned port);
    int setUpGenerator(unsigned port);
    int setUpTrigger(unsigned port);
    int finishSetUp(unsigned port, unsigned exSyncMode);
    int writeMasterSync(unsigned port);
    int writeQueueEnable(unsigned port);
    void armSoftwareTrigger(unsigned port);
    int pulseSoftwareTrigger(unsigned port);
    int queueSoftwareTriggers(unsigned port, unsigned value);

    const double mHdLowLimit = 15.0;  ///< shortest time base in clock cycles, and the length of its low phase
    double mHdSync = 10.0;            ///< time base in us, common to both ports
    std::array<PortData, kPorts> m_portdata;
};
