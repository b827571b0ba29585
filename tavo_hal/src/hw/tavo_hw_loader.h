/// \file
/// The operations of the hardware-access library that the loader has resolved: one pointer an operation, named
/// m_P and the operation. A test that needs a board of its own stores its functions here; nothing is loaded then,
/// as long as the sentinel m_PTavoRegisterRead is set.
#pragma once

#include <atomic>

#include "fabrix/applet.h"
#include "fabrix/tavo_hw.h"

#define FABRIX_TAVO(result, name, parameters, arguments) extern std::atomic<result(*) parameters> m_P##name;
#define FABRIX_TAVO_OPAQUE(result, name)                                                                       \
    extern std::atomic<result (*)(FgDevice*, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, \
                                  uintptr_t)>                                                                  \
        m_P##name;
#define FABRIX_TAVO_NO_DEVICE(result, name)                                                                    \
    extern std::atomic<result (*)(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, \
                                  uintptr_t)>                                                                  \
        m_P##name;
#include "fabrix/runtime_operations.inc"
