#pragma once

#include <string>

#include "AcquisitionRun.h"

namespace quillon::tool {

/// \return the statistics of an acquisition as text, or as a JSON object where the settings say so
std::string reportText(const AcquisitionRun& run, const RecordingReport& report);

/// \throws ToolError or host::HostError that says what ended the acquisition, unless it is complete or was stopped
void throwUnlessWell(const host::Grabber& grabber, const AcquisitionRun& run, const RecordingReport& report);

}  // namespace quillon::tool
