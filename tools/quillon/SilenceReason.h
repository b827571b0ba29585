#pragma once

#include <string>

#include "host/Grabber.h"

namespace quillon::tool {

/// Says why no picture may have come, the surest reason first, and what was waited for: the trigger mode with its
/// input, the ExSync output and its CC lines, the camera link.
std::string explainSilence(const host::Grabber& grabber);

}  // namespace quillon::tool
