// An applet runtime library that records its calls and knows the registers of the design by name.
#include <array>

#include "tests/applet/stubs/Recorder.h"
#include "tests/core/DesignRegisters.h"

#define HapGetRegisterByName listedGetRegisterByName
#define HapGetRegisterBitRange listedGetRegisterBitRange
#define FABRIX_HAP(result, name, parameters, arguments)                   \
    extern "C" FABRIX_EXPORT result name parameters {                     \
        return recorder().call<result>(#name, std::make_tuple arguments); \
    }
#define FABRIX_HAP_OPAQUE(result, name)                                                                        \
    extern "C" FABRIX_EXPORT result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, \
                                         uintptr_t a6, uintptr_t a7, uintptr_t a8) {                           \
        return recorder().call<result>(#name, std::make_tuple(a1, a2, a3, a4, a5, a6, a7, a8));                \
    }
#include "fabrix/runtime_operations.inc"
#undef HapGetRegisterByName
#undef HapGetRegisterBitRange

extern "C" {

FABRIX_EXPORT int HapGetRegisterByName(fpga_design* design, const char* name) {
    recorder().call<int>("HapGetRegisterByName", std::make_tuple(design, name));
    for (size_t i = 0; i < designRegisters().size(); ++i) {
        if (designRegisters()[i].name == name) return static_cast<int>(i) + 1;
    }
    return 0;
}

FABRIX_EXPORT int HapGetRegisterBitRange(fpga_design* design, int number) {
    recorder().call<int>("HapGetRegisterBitRange", std::make_tuple(design, number));
    const auto index = static_cast<size_t>(number) - 1;
    return index < designRegisters().size() ? designRegisters()[index].width : 0;
}
}
