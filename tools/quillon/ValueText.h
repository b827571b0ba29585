#pragma once

#include <string>

#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// Writes a value the way a person types it: an enumeration entry as "RO (1)", a double with a full stop and as few
/// digits as tell it from its neighbours.
std::string formatValue(const host::ParameterInfo& parameter, const host::ParameterValue& value);

/// Writes a limit in the parameter's own type, without its unit.
std::string formatLimit(const host::ParameterInfo& parameter, double limit);

/// Lists the entries of an enumeration: "NONE (0), RO (1)".
std::string formatEntries(const host::ParameterInfo& parameter);

/// Reads a value: integers decimal or with 0x, doubles with a full stop, enumeration entries by symbolic name (with
/// or without "FG_"), display name or number in any letter case, texts as they are.
/// \throws ToolError when the text is no value of the parameter's type
host::ParameterValue parseValue(const host::ParameterInfo& parameter, const std::string& text);

}  // namespace quillon::tool
