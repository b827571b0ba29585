#pragma once

#include <string>

#include "host/ParameterCatalogue.h"

namespace quillon::pages {

/// \param description the applet's own words about the parameter, may be empty
/// \return HTML: the parameter's heading and facts as they are after opening; its name is the anchor
[[nodiscard]] std::string parameterSection(const host::Grabber& grabber, const host::ParameterInfo& parameter,
                                           const std::string& description);

}  // namespace quillon::pages
