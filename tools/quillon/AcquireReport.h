#pragma once

#include <string>

#include "AcquisitionRun.h"
#include "SoftwareTriggers.h"

namespace quillon::tool {

/// \return the statistics of an acquisition as text, or as a JSON object where the settings say so
/// \param triggers how the sending of software triggers went; null when none were to be sent
std::string reportText(const AcquisitionRun& run, const RecordingReport& report,
                       const TriggerReport* triggers = nullptr);

/// \throws ToolError or host::HostError that says what ended the acquisition, unless it is complete or was stopped
void throwUnlessWell(const host::Grabber& grabber, const AcquisitionRun& run, const RecordingReport& report);

}  // namespace quillon::tool
