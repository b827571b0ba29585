#pragma once

#include <span>
#include <string>

namespace quillon::host {

/// One result code in words.
struct ResultCodeRow {
    int code;
    const char* name;
    const char* meaning;
    const char* remedy;
};

/// \return every result code of fabrix/result_codes.h, from 0 downwards
std::span<const ResultCodeRow> resultCodes();

/// \return the row of \p code, or null for a code that is not the applet's own
const ResultCodeRow* findResultCode(int code);

/// \return name, number and meaning, for example "FG_INVALID_PORT (-61): the port does not exist"
std::string describeResultCode(int code);

}  // namespace quillon::host
