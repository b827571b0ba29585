/// \file
/// Interface of the applet runtime library `libhaprt.so`: loaded designs and what they tell of themselves.
///
/// The applet exports a function of the same name for each operation. It loads the library at the first call and
/// passes its arguments on unchanged; a missing operation answers 0 or null.
///
/// A null design handle, a register handle of 0 and a negative count are failures. Names and texts stay the
/// library's. Bit ranges are widths in bits; direction 1 may be written, any other is read only.
/// Opaque operations take up to eight pointer-wide arguments that only the library knows.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define FABRIX_HAP(result, name, parameters, arguments) FABRIX_EXPORT result name parameters;
#define FABRIX_HAP_OPAQUE(result, name)                                                                           \
    FABRIX_EXPORT result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6, \
                              uintptr_t a7, uintptr_t a8);
#include "fabrix/runtime_operations.inc"

#ifdef __cplusplus
}
#endif
