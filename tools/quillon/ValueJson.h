#pragma once

#include <nlohmann/json.hpp>

#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// Keys stay in the order in which they were written.
using Json = nlohmann::ordered_json;

/// A value: a number, for an enumeration that of its entry, or a text.
Json valueJson(const host::ParameterInfo& parameter, const host::ParameterValue& value);

/// All that the catalogue knows of a parameter, with \p value unless it is null. What a parameter does not have is
/// absent; units stand without brackets.
Json parameterJson(const host::ParameterInfo& parameter, const host::ParameterValue* value);

/// Prints a document to standard output. Bytes that are no UTF-8 become replacement characters.
void printJson(const Json& document);

}  // namespace quillon::tool
