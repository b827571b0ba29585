#pragma once

#include <cstdint>

#include "fabrix/types.h"
#include "simulation/design/Design.h"

/// A loaded design as both runtime libraries see it. The applet runtime library issues and owns it; the hardware-access
/// library reads it while it configures a board. The two libraries are built together, and the version refuses a
/// library of another build.
struct fpga_design {
    static constexpr uint32_t kMagic = 0x51444831;
    static constexpr uint32_t kVersion = 1;

    uint32_t magic = 0;  // 0 once the design has been unloaded
    uint32_t version = kVersion;
    const fpga_design* self = nullptr;  // the handle's own address
    const simulation::Design* design = nullptr;

    /// The design behind \p handle; null for a null, damaged or unloaded handle.
    [[nodiscard]] static const simulation::Design* designOf(const fpga_design* handle) {
        const bool isValid = handle != nullptr && reinterpret_cast<uintptr_t>(handle) % alignof(fpga_design) == 0 &&
                             handle->magic == kMagic && handle->version == kVersion && handle->self == handle;
        return isValid ? handle->design : nullptr;
    }
};
