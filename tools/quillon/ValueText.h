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

/// \return whether the limits say more than that there are none: a read-only parameter without a range of its own is
///         published with limits of 0 to 0
bool hasRange(const host::ParameterInfo& parameter);

/// \return the limits or the entries of a parameter, "32 to 65536, step 16"; empty when it has none
std::string formatRange(const host::ParameterInfo& parameter);

/// \return the access as three letters: readable, writable, changeable while an acquisition runs; "rw-"
std::string formatAccess(const host::ParameterInfo& parameter);

/// Appends the parameter's unit as it is published, after a blank.
std::string withUnit(const host::ParameterInfo& parameter, const std::string& number);

/// Reads a value: integers decimal or with 0x, doubles with a full stop, enumeration entries by symbolic name (with
/// or without "FG_"), display name or number in any letter case, texts as they are. A unit behind a number is converted
/// into the parameter's own, "2ms" for a parameter in microseconds to 2000. \throws ToolError when the text is no value
/// of the parameter's type
host::ParameterValue parseValue(const host::ParameterInfo& parameter, const std::string& text);

}  // namespace quillon::tool
