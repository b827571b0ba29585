/// \file
/// Interface of the hardware-access library `libtavo_hw.so`.
///
/// The applet exports a function of the same name for each operation. It loads the library at the first call,
/// answers -6 (or null where the result is a pointer) for a null device or a missing operation, and else passes
/// its arguments on unchanged; TavoGetBufferStatus passes 0 for `dummy`.
///
/// Units and shapes: `handle` is a register handle of the applet runtime library (0 = no such register), values are
/// 64 bits wide, `size` and `length` are bytes, pictures count from 1 and buffers from 0, `timeout` is in seconds.
/// A tag, and a time stamp of TavoGetDmaTimeStamp, is the positive half of an int, as negative answers are codes: it
/// counts in 31 bits and begins at 0 again.
/// DMA modes: 16 fills the buffers continuously, 32 waits for the host to hand each buffer back.
/// Opaque operations take up to eight pointer-wide arguments that only the library knows.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define FABRIX_TAVO(result, name, parameters, arguments) FABRIX_EXPORT result name parameters;
#define FABRIX_TAVO_OPAQUE(result, name)                                                                              \
    FABRIX_EXPORT result name(FgDevice* device, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6, \
                              uintptr_t a7, uintptr_t a8);
#define FABRIX_TAVO_NO_DEVICE(result, name)                                                                       \
    FABRIX_EXPORT result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6, \
                              uintptr_t a7, uintptr_t a8);
#include "fabrix/runtime_operations.inc"

#ifdef __cplusplus
}
#endif
