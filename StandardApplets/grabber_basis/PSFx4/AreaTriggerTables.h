/// \file
/// The tables of the area trigger's parameter side: parameters, flags by trigger mode, entries and groups.
#pragma once

#include <array>
#include <cstddef>

#include "StandardApplets/grabber_basis/PSFx4/ParameterTable.h"
#include "StandardApplets/grabber_basis/RSFx4/TriggerModes.h"
#include "fabrix/parameter_ids.h"

namespace area_trigger {

// clang-format off
constexpr std::array kParameters{
    ParameterRow{FG_TRIGGERMODE, TYPE_ENUM, "FG_TRIGGERMODE", "Mode", nullptr, "Trigger mode for the ExSync generation."},
    ParameterRow{FG_PRESCALER, TYPE_DOUBLE, "FG_PRESCALER", "Time Base", "[us]", "Time base."},
    ParameterRow{FG_FRAMESPERSEC, TYPE_DOUBLE, "FG_FRAMESPERSEC", "Frames/Sec.", "[Hz]", "Frequency of the ExSync generation (=frame rate). Only available in grabber controlled trigger mode."},
    ParameterRow{FG_EXPOSURE, TYPE_INT, "FG_EXPOSURE", "Exposure", "[us]", "Length of the ExSync exposure in microseconds."},
    ParameterRow{FG_TRIGGERINSRC, TYPE_ENUM, "FG_TRIGGERINSRC", "Source", nullptr, "Trigger input signal on the trigger board for the ExSync generation."},
    ParameterRow{FG_STROBEPULSEDELAY, TYPE_DOUBLE, "FG_STROBEPULSEDELAY", "Delay", "[us]", "Delay of the flash signal out with respect to the trigger input signal."},
    ParameterRow{FG_FLASH_POLARITY, TYPE_ENUM, "FG_FLASH_POLARITY", "Polarity", nullptr, "Polarity of the Flash out signal."},
    ParameterRow{FG_EXSYNCINVERT, TYPE_ENUM, "FG_EXSYNCINVERT", "Invert", nullptr, "ExSync invert"},
    ParameterRow{FG_EXSYNCPOLARITY, TYPE_ENUM, "FG_EXSYNCPOLARITY", "Polarity", nullptr, "Polarity of the ExSync out signal."},
    ParameterRow{FG_EXSYNCDELAY, TYPE_DOUBLE, "FG_EXSYNCDELAY", "Exsync Delay", "[us]", "Delay of the ExSync signal with respect to the trigger input signal."},
    ParameterRow{FG_FLASHON, TYPE_ENUM, "FG_FLASHON", "Flash", nullptr, "Switch the Flash signal on or off."},
    ParameterRow{FG_EXSYNCON, TYPE_ENUM, "FG_EXSYNCON", "Exsync Enable", nullptr, "Switch the ExSync signal on or off."},
    ParameterRow{FG_TRIGGERINPOLARITY, TYPE_ENUM, "FG_TRIGGERINPOLARITY", "Polarity", nullptr, "Polarity of the trigger input signal."},
};
constexpr std::array kPulseLimitParameters{
    ParameterRow{FG_LIMIT_TRIGGER_PULSES, TYPE_INT, "FG_LIMIT_TRIGGER_PULSES", "NrOfTriggerPulses", "[pulses]", "Number of used trigger pulses."},
};
constexpr std::array kFlashTimeParameters{
    ParameterRow{FG_FLASHTIME, TYPE_DOUBLE, "FG_FLASHTIME", "Flashtime", "[us]", "Length of the Flash signal in microseconds."},
    ParameterRow{FG_FLASHTIME_SYNC, TYPE_ENUM, "FG_FLASHTIME_SYNC", "Flashtime Synchronisation", nullptr, "Force Flash signal and ExSync signal to be of same length."},
};
constexpr std::array kPulseParameters{
    ParameterRow{FG_SENDSOFTWARETRIGGER, TYPE_ENUM, "FG_SENDSOFTWARETRIGGER", "Software trigger pulse", nullptr, "Generate a software trigger pulse."},
};
constexpr std::array kQueueParameters{
    ParameterRow{FG_SENDSOFTWARETRIGGER, TYPE_INT, "FG_SENDSOFTWARETRIGGER", "Send pulses", nullptr, "Generate software triggers."},
    ParameterRow{FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, TYPE_INT, "FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL", "Queue Filllevel", nullptr, "Filling level of software trigger queue."},
};
static_assert(idsAreUnique(kParameters) && idsAreUnique(kFlashTimeParameters) && idsAreUnique(kQueueParameters));

/// Columns of the access table.
enum ModeColumn : size_t { kFree, kGrabber, kInput, kSoftware, kModeColumns };
/// Column of each trigger mode; 5 and 6, which only a file can set, have that of FREE_RUN.
constexpr std::array kColumns{kFree, kGrabber, kInput, kGrabber, kSoftware, kFree, kFree, kSoftware};

/// Flags of one parameter: access bits by trigger mode, the others in every mode.
struct ModeFlagRow {
    int id;
    std::array<int, kModeColumns> access;
    int range;
    int visibility;
    bool isSaved;
};
constexpr int kR = kReadOnly;
constexpr int kRw = kReadWriteAlways;
constexpr std::array kFlags{
    ModeFlagRow{FG_TRIGGERMODE,                     {kRw, kRw, kRw, kRw}, 1, 1, true},
    ModeFlagRow{FG_EXSYNCON,                        {kR, kRw, kRw, kRw},  1, 1, true},
    ModeFlagRow{FG_FRAMESPERSEC,                    {kR, kRw, kR, kR},    2, 1, true},
    ModeFlagRow{FG_EXPOSURE,                        {kR, kRw, kRw, kRw},  2, 1, true},
    ModeFlagRow{FG_TRIGGERINSRC,                    {kR, kR, kRw, kR},    1, 1, true},
    ModeFlagRow{FG_TRIGGERINPOLARITY,               {kR, kR, kRw, kR},    1, 1, true},
    ModeFlagRow{FG_EXSYNCDELAY,                     {kR, kRw, kRw, kRw},  2, 1, true},
    ModeFlagRow{FG_EXSYNCINVERT,                    {kR, kRw, kRw, kRw},  1, 0, true},
    ModeFlagRow{FG_EXSYNCPOLARITY,                  {kR, kRw, kRw, kRw},  1, 1, true},
    ModeFlagRow{FG_FLASHON,                         {kR, kRw, kRw, kRw},  1, 1, true},
    ModeFlagRow{FG_STROBEPULSEDELAY,                {kR, kRw, kRw, kRw},  2, 1, true},
    ModeFlagRow{FG_FLASH_POLARITY,                  {kR, kRw, kRw, kRw},  1, 1, true},
    ModeFlagRow{FG_PRESCALER,                       {kR, kRw, kRw, kRw},  2, 1, true},
};
constexpr std::array kPulseLimitFlags{ModeFlagRow{FG_LIMIT_TRIGGER_PULSES, {kRw, kRw, kRw, kRw}, 1, 1, true}};
constexpr std::array kFlashTimeFlags{
    ModeFlagRow{FG_FLASHTIME,                       {kR, kRw, kRw, kRw},  1, 1, true},
    ModeFlagRow{FG_FLASHTIME_SYNC,                  {kR, kRw, kRw, kRw},  1, 1, true},
};
constexpr std::array kPulseFlags{
    ModeFlagRow{FG_SENDSOFTWARETRIGGER, {kNoAccess, kNoAccess, kNoAccess, kWriteAlways}, 1, 1, false},
};
/// On a port with a queue: several triggers at once, so the number has a range.
constexpr std::array kQueueFlags{
    ModeFlagRow{FG_SENDSOFTWARETRIGGER, {kNoAccess, kNoAccess, kNoAccess, kWriteAlways}, 2, 1, false},
    ModeFlagRow{FG_SOFTWARETRIGGER_QUEUE_FILLLEVEL, {kR, kR, kR, kR},     1, 1, false},
};
static_assert(idsAreUnique(kFlags) && idsAreUnique(kFlashTimeFlags) && idsAreUnique(kQueueFlags));
// clang-format on

/// All trigger modes; two of them exist only where the design has what they need.
constexpr std::array kModes{
    EnumField{"FreeRun",                    FREE_RUN,                      "FREE_RUN"                     },
    EnumField{"GrabberControlled",          GRABBER_CONTROLLED,            "GRABBER_CONTROLLED"           },
    EnumField{"GrabberControlled Synchron", GRABBER_CONTROLLED_SYNCHRON,   "GRABBER_CONTROLLED_SYNCHRON"  },
    EnumField{"ExternTrigger",              ASYNC_TRIGGER,                 "ASYNC_TRIGGER"                },
    EnumField{"SoftwareTrigger",            ASYNC_SOFTWARE_TRIGGER,        "ASYNC_SOFTWARE_TRIGGER"       },
    EnumField{"SoftwareTriggerQueued",      ASYNC_SOFTWARE_TRIGGER_QUEUED, "ASYNC_SOFTWARE_TRIGGER_QUEUED"},
};
constexpr std::array kOnOff{
    EnumField{"On",  1, "FG_ON" },
    EnumField{"Off", 0, "FG_OFF"}
};
constexpr std::array kInputs{
    EnumField{"Input 0", 0, "Input_0"},
    EnumField{"Input 1", 1, "Input_1"},
    EnumField{"Input 2", 2, "Input_2"},
    EnumField{"Input 3", 3, "Input_3"},
    EnumField{"Input 4", 4, "Input_4"},
    EnumField{"Input 5", 5, "Input_5"},
    EnumField{"Input 6", 6, "Input_6"},
    EnumField{"Input 7", 7, "Input_7"},
};
constexpr std::array kInputPolarities{
    EnumField{"High", 0, "High"},
    EnumField{"Low",  1, "Low" }
};
constexpr std::array kOutputPolarities{
    EnumField{"Low",  0, "Low" },
    EnumField{"High", 1, "High"}
};
constexpr std::array kSend{
    EnumField{"Send", 1, "Send"}
};

constexpr std::array kTopGroup{FG_TRIGGERMODE, FG_EXSYNCON, FG_FLASHON};
constexpr std::array kSoftwareGroup{FG_SENDSOFTWARETRIGGER};
constexpr std::array kInputGroup{FG_TRIGGERINSRC, FG_TRIGGERINPOLARITY};
constexpr std::array kExSyncGroup{FG_FRAMESPERSEC, FG_EXPOSURE, FG_EXSYNCDELAY, FG_EXSYNCINVERT, FG_EXSYNCPOLARITY};
constexpr std::array kFlashGroup{FG_STROBEPULSEDELAY, FG_FLASH_POLARITY};
constexpr std::array kFlashGroupWithTime{FG_FLASHTIME_SYNC, FG_FLASHTIME, FG_STROBEPULSEDELAY, FG_FLASH_POLARITY};
constexpr std::array kAccuracyGroup{FG_PRESCALER};

}  // namespace area_trigger
