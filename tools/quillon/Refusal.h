#pragma once

#include <string>

#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// Explains why the applet refused a value: names the parameter, the value, the limit with its unit and the remedy,
/// for example "FG_WIDTH = 1000 refused: not a multiple of the step 16 [pixels]; nearest allowed: 992 or 1008
/// (code -7080)".
/// \param catalogue made right before the refused write; holds \p parameter
/// \param code the applet's answer
std::string explainRefusal(const host::ParameterCatalogue& catalogue, const host::ParameterInfo& parameter,
                           const host::ParameterValue& value, int code);

}  // namespace quillon::tool
