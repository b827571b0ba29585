// A hardware-access library that records its calls. Two operations are written out below: the list renames theirs.
#include "tests/applet/stubs/Recorder.h"

#define TavoGetBufferStatus listedGetBufferStatus
#define FABRIX_TAVO(result, name, parameters, arguments)                  \
    extern "C" FABRIX_EXPORT result name parameters {                     \
        return recorder().call<result>(#name, std::make_tuple arguments); \
    }
#define FABRIX_TAVO_OPAQUE(result, name)                                                                           \
    extern "C" FABRIX_EXPORT result name(FgDevice* device, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, \
                                         uintptr_t a6, uintptr_t a7, uintptr_t a8) {                               \
        return recorder().call<result>(#name, std::make_tuple(device, a2, a3, a4, a5, a6, a7, a8));                \
    }
#define FABRIX_TAVO_NO_DEVICE(result, name)                                                                    \
    extern "C" FABRIX_EXPORT result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, \
                                         uintptr_t a6, uintptr_t a7, uintptr_t a8) {                           \
        return recorder().call<result>(#name, std::make_tuple(a1, a2, a3, a4, a5, a6, a7, a8));                \
    }
#include "fabrix/runtime_operations.inc"
#undef TavoGetBufferStatus

extern "C" FABRIX_EXPORT int TavoGetBufferStatus(FgDevice* device, dma_mem* memory, int dummy, frameindex_t index,
                                                 fx_buf_status* status) {
    return recorder().call<int>("TavoGetBufferStatus", std::make_tuple(device, memory, dummy, index, status));
}

#ifdef STUB_NEEDS_A_SYMBOL
extern "C" int stub_missing_symbol();
extern "C" FABRIX_EXPORT int stub_calls_what_nobody_has() { return stub_missing_symbol(); }
#endif
