#pragma once

#include <array>
#include <string_view>

namespace simulation {

/// Every operation of the two runtime libraries: what a planned fault may name.
constexpr std::array kOperationNames{
#define FABRIX_TAVO(result, name, parameters, arguments) std::string_view(#name),
#define FABRIX_TAVO_OPAQUE(result, name) std::string_view(#name),
#define FABRIX_TAVO_NO_DEVICE(result, name) std::string_view(#name),
#define FABRIX_HAP(result, name, parameters, arguments) std::string_view(#name),
#define FABRIX_HAP_OPAQUE(result, name) std::string_view(#name),
#include "fabrix/runtime_operations.inc"
};

}  // namespace simulation
