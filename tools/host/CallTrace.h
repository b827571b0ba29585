#pragma once

#include <cstdio>

#include "host/AppletLibrary.h"

namespace quillon::host {

/// Puts a function before each of \p functions that calls it and then writes name, arguments and result to \p stream
/// as one line, for example "trace: Fg_setParameterWithType(0x1000, 100, 0x2000 -> 512, 0, 1) = 0". The original
/// functions are kept for the life of the process, for one library only.
void traceFunctions(AppletFunctions& functions, std::FILE* stream);

}  // namespace quillon::host
