#pragma once

#include <cstdint>
#include <stop_token>
#include <string>

#include "host/Grabber.h"

namespace quillon::tool {

/// Software triggers to send.
struct TriggerSeries {
    uint32_t count = 1;
    double hertz = 0;  ///< 0: as soon as the board takes them
};

/// How the sending went.
struct TriggerReport {
    uint32_t sent = 0;      ///< accepted by the board
    uint64_t refusals = 0;  ///< attempts for which the board was busy or its queue full; they were repeated
    int code = 0;           ///< negative or 1: what ended it
};

/// \param text N or N@HZ, for example "100@25"
/// \throws ToolError when it is neither
TriggerSeries parseTriggerSeries(const std::string& text);

/// \throws ToolError when the trigger mode takes no software triggers
void checkTriggerMode(const host::Grabber& grabber);

/// Sends software triggers in a schedule that does not drift: a trigger that is late, because the board was busy,
/// does not delay those after it. No trigger is left out: one that the board refuses for the moment is repeated. Ends
/// early on a stop and on any other refusal. No other thread may write parameters meanwhile.
TriggerReport sendSoftwareTriggers(host::Grabber& grabber, const TriggerSeries& series, const std::stop_token& stop);

/// \return "sent 7 of 10 software triggers"
std::string describe(const TriggerReport& report, const TriggerSeries& series);

/// \throws ToolError when the board refused a trigger for good
void throwUnlessSent(const TriggerReport& report, const TriggerSeries& series);

}  // namespace quillon::tool
