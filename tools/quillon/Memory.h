#pragma once

#include <cstdint>
#include <string>

namespace quillon::tool {

/// \return bytes of memory that this process can still have: what the machine has free, and what the process's
///         control group leaves of its limit
uint64_t availableMemory();

/// Writes a number of bytes for a person: "1.5 GB", with powers of 1000.
std::string formatBytes(double bytes);

}  // namespace quillon::tool
