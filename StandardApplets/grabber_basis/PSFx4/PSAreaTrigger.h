#pragma once

#include <span>
#include <vector>

#include "StandardApplets/grabber_basis/RSFx4/RSAreaTrigger.h"

struct ParameterRow;

/// Parameter side of the area trigger: mode, frame rate, exposure, time base, trigger input, ExSync and flash outputs,
/// pulse limit and software triggers.
///
/// Times are stored as the hardware will produce them, and the limits of one follow from the others: so a write sets
/// the limits and access bits of all of them again.
class PSAreaTrigger : public RSAreaTrigger {
public:
    /// Creates no parameter when port 0 is no area-scan port.
    explicit PSAreaTrigger(Fg_StdMaster* FG_base);

    /// The fill level is read from the hardware; FG_SENDSOFTWARETRIGGER always reads 1.
    int getParamFromRs(int id, void* val, unsigned int port) override;
    /// \return as RSMaster; for FG_TRIGGERMODE as setTriggerMode(), for FG_SENDSOFTWARETRIGGER as
    ///         sendSoftwareTrigger()
    int setParamToRs(int id, const void* val, unsigned int port) override;
    void setRegisterInfoTree(unsigned int port) override;
    void setDescriptions() override;
    void setFlags(unsigned int port) override;
    void setLimits(unsigned int port, bool updateDefault) override;
    const char* getDocModuleURL(int id) override;

private:
    int storeValue(int id, const void* val, unsigned port);
    void storeExposure(unsigned port, unsigned us);
    void storeFlashTimeSync(unsigned port, bool isSynchronous);
    [[nodiscard]] double snapped(int id, double value, unsigned port) const;

    [[nodiscard]] std::vector<std::span<const ParameterRow>> publishedTables() const;
    [[nodiscard]] bool bothPortsHaveFlashTime() const;
    void setTriggerModeLimits(unsigned port, bool updateDefault);
    void setTimeBaseLimits(unsigned port, bool updateDefault);
    void setFrameRateLimits(unsigned port, bool updateDefault);
    void setExposureLimits(unsigned port, bool updateDefault);
    void setDelayLimits(int id, unsigned port, bool updateDefault);
    void setFlashTimeLimits(unsigned port, bool updateDefault);
    void setSoftwareTriggerLimits(unsigned port, bool updateDefault);
};
