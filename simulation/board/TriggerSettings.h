#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulation/board/PulseLine.h"
#include "simulation/board/RegisterRow.h"

namespace simulation {

/// What the registers say about the trigger block. All its times count in units of the time base.
struct TriggerSettings {
    static constexpr std::array kRegisters{
        StageRegister{"AATrgArea_HdPeriod",         0},
        StageRegister{"AATrgArea_ExSyncOn",         0},
        StageRegister{"AATrgArea_ExSyncMode",       0},
        StageRegister{"AATrgArea_ExSyncHigh",       0},
        StageRegister{"AATrgArea_ExSyncLow",        0},
        StageRegister{"AATrgArea_ExSyncDelay",      0},
        StageRegister{"AATrg_ExSyncHighActive",     0},
        StageRegister{"AATrgArea_FlashEnable",      0},
        StageRegister{"AATrg_FlashHighActive",      0},
        StageRegister{"AATrgArea_FlashDelay",       0},
        StageRegister{"AATrgArea_FlashLow",         0},
        StageRegister{"AAEnable_ProgFlashDuration", 0},
        StageRegister{"AATrg_ImgInSelect",          0},
        StageRegister{"AATrg_ImgInLowActive",       0},
        StageRegister{"AATrg_ImgSwEnable",          0},
        StageRegister{"AATrg_ImgSwSet",             0},
        StageRegister{"AATrgArea_SwTrgQueueEnable", 0},
        StageRegister{"AATrgArea_TriggersTillStop", 0},
    };
    using Values = std::array<uint64_t, kRegisters.size()>;

    static constexpr BoardTime kClock = BoardTime(16);  // a cycle of the 62.5 MHz clock
    static constexpr uint64_t kFewestClocks = 15;       // the low phase of the time base; it is never shorter
    static constexpr int kRecoveryUnits = 2;            // between two triggered pulses

    /// What makes pulses: the two values of the mode register; others make none.
    enum class Maker : uint8_t { generator, trigger, nothing };
    /// Where triggers come from.
    enum class Source : uint8_t { input, imageSwitch, queue };

    [[nodiscard]] static TriggerSettings of(const Values& values);

    [[nodiscard]] bool generates() const { return isOn && maker == Maker::generator; }
    [[nodiscard]] bool listensTo(Source wanted) const { return isOn && maker == Maker::trigger && source == wanted; }

    /// From one triggered pulse until the block takes the next trigger.
    [[nodiscard]] BoardTime busyTime() const { return exSync.delay + cycle + kRecoveryUnits * unit; }

    BoardTime unit = kFewestClocks * kClock;
    bool isOn = false;
    Maker maker = Maker::generator;
    Source source = Source::input;
    BoardTime cycle = unit;  // the generator's period; of a triggered pulse, the time that it takes
    PulseShape exSync;
    PulseShape flash;
    bool exSyncHighActive = false;
    bool flashIsOn = false;
    bool flashHighActive = false;
    unsigned input = 0;
    bool inputLowActive = false;
    bool switchIsSet = false;
    bool queueIsOn = false;
    std::optional<uint64_t> limit;  // pulses
};

}  // namespace simulation
