#pragma once

#include <span>

namespace quillon::tool {

/// When the applet needs a register.
enum class RegisterNeed {
    Always,
    SecondCamera,  ///< on a design for two cameras
    Optional       ///< a feature is missing without it
};

struct UsedRegister {
    const char* name;
    const char* module;  ///< the one that uses it
    RegisterNeed need;
};

/// \return all registers that this system's applet looks up in a design, made from its sources
std::span<const UsedRegister> usedRegisters();

}  // namespace quillon::tool
