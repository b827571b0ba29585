#pragma once

#include <array>
#include <string_view>

namespace simulation {

/// Every operation that the two runtime libraries have: what a planned fault may name.
constexpr std::array kOperationNames{
#define FABRIX_TAVO(result, name, parameters, arguments) std::string_view(#name),
#define FABRIX_HAP(result, name, parameters, arguments) std::string_view(#name),
#include "fabrix/runtime_operations.inc"
    // Opaque to the applet, but not missing here.
    std::string_view("TavoUnlockBuffer"),
    std::string_view("HapGetRegisterInitValue"),
    std::string_view("HapGetNrOfUserInfos"),
};

}  // namespace simulation
