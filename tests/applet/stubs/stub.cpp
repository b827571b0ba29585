// A runtime library of either family that notes its calls, a line "NAME ARGUMENT..." each, and answers what the test
// has set, else 0 or null. It knows the registers of the design by name.
#include <map>
#include <sstream>
#include <tuple>
#include <type_traits>

#include "fabrix/types.h"
#include "tests/core/DesignRegisters.h"

namespace {

struct State {
    std::string calls;
    std::map<std::string, int64_t> answers;
};
State& state() {
    static State instance;
    return instance;
}

template <class Result, class... Arguments>
Result record(const std::string& name, const std::tuple<Arguments...>& arguments) {
    std::ostringstream line;
    line << name;
    std::apply([&](const auto&... argument) { ((line << ' ' << argument), ...); }, arguments);
    state().calls += line.str() + "\n";
    const int64_t answer = state().answers[name];
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(static_cast<intptr_t>(answer));
    } else {
        return static_cast<Result>(answer);
    }
}

}  // namespace

// Written out below: the list renames theirs.
#define TavoGetBufferStatus listedGetBufferStatus
#define HapGetRegisterByName listedGetRegisterByName
#define HapGetRegisterBitRange listedGetRegisterBitRange
#define FABRIX_TAVO(result, name, parameters, arguments) \
    extern "C" FABRIX_EXPORT result name parameters { return record<result>(#name, std::make_tuple arguments); }
#define FABRIX_HAP FABRIX_TAVO
#define OPAQUE(result, name, First)                                                                        \
    extern "C" FABRIX_EXPORT result name(First a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, \
                                         uintptr_t a6, uintptr_t a7, uintptr_t a8) {                       \
        return record<result>(#name, std::make_tuple(a1, a2, a3, a4, a5, a6, a7, a8));                     \
    }
#define FABRIX_TAVO_OPAQUE(result, name) OPAQUE(result, name, FgDevice*)
#define FABRIX_TAVO_NO_DEVICE(result, name) OPAQUE(result, name, uintptr_t)
#define FABRIX_HAP_OPAQUE(result, name) OPAQUE(result, name, uintptr_t)
#include "fabrix/runtime_operations.inc"
#undef TavoGetBufferStatus
#undef HapGetRegisterByName
#undef HapGetRegisterBitRange

extern "C" {

FABRIX_EXPORT int TavoGetBufferStatus(FgDevice* device, dma_mem* memory, int dummy, frameindex_t index,
                                      fx_buf_status* status) {
    return record<int>("TavoGetBufferStatus", std::make_tuple(device, memory, dummy, index, status));
}

FABRIX_EXPORT int HapGetRegisterByName(fpga_design* design, const char* name) {
    record<int>("HapGetRegisterByName", std::make_tuple(design, name));
    int handle = 0;
    for (const DesignRegister& row : designRegisters()) {
        ++handle;
        if (row.name == name) return handle;
    }
    return 0;
}

FABRIX_EXPORT int HapGetRegisterBitRange(fpga_design* design, int number) {
    record<int>("HapGetRegisterBitRange", std::make_tuple(design, number));
    const auto index = static_cast<size_t>(number) - 1;
    return index < designRegisters().size() ? designRegisters()[index].width : 0;
}

/// \name The test's side
/// @{
FABRIX_EXPORT const char* stub_calls() { return state().calls.c_str(); }
FABRIX_EXPORT void stub_clear() { state().calls.clear(); }
FABRIX_EXPORT void stub_answer(const char* operation, int64_t value) { state().answers[operation] = value; }
/// @}

#ifdef STUB_NEEDS_A_SYMBOL
int stub_missing_symbol();
FABRIX_EXPORT int stub_calls_what_nobody_has() { return stub_missing_symbol(); }
#endif
}
