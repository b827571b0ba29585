/// \file
/// The operations of the applet runtime library that the loader has resolved: one pointer an operation, named m_P
/// and the operation. A test stores its own functions here; nothing is loaded then, as long as the sentinel
/// m_PHapLoadHapFileWithType is set.
#pragma once

#include <atomic>

#include "fabrix/applet.h"
#include "fabrix/haprt.h"

#define FABRIX_HAP(result, name, parameters, arguments) extern std::atomic<result(*) parameters> m_P##name;
#define FABRIX_HAP_OPAQUE(result, name)                                                                        \
    extern std::atomic<result (*)(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, \
                                  uintptr_t)>                                                                  \
        m_P##name;
#include "fabrix/runtime_operations.inc"
