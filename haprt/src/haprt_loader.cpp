#include "haprt/src/haprt_loader.h"

#include <exception>
#include <tuple>

#include "tavo_hal/src/platform/SharedLibrary.h"

namespace {

void ensureLoaded() {
    // A failed load shows in the operation, which stays null.
    if (m_PHapLoadHapFileWithType.load(std::memory_order_acquire) == nullptr) std::ignore = HAPRT_OpenLib();
}

void resolveAll(void* library) {
    using tavo::platform::resolveOperation;
#define FABRIX_HAP(result, name, parameters, arguments)                                   \
    if (static_cast<void*>(&m_P##name) != static_cast<void*>(&m_PHapLoadHapFileWithType)) \
        resolveOperation(library, #name, m_P##name);
#define FABRIX_HAP_OPAQUE(result, name) resolveOperation(library, #name, m_P##name);
#include "fabrix/runtime_operations.inc"
    // The sentinel comes last: who sees it sees the whole table.
    resolveOperation(library, "HapLoadHapFileWithType", m_PHapLoadHapFileWithType);
}

}  // namespace

// The table, and one exported function an operation. A missing operation answers 0 or null.
#define FABRIX_HAP(result, name, parameters, arguments)                   \
    std::atomic<result(*) parameters> m_P##name{nullptr};                 \
    extern "C" result name parameters {                                   \
        ensureLoaded();                                                   \
        const auto operation = m_P##name.load(std::memory_order_acquire); \
        if (operation == nullptr) return {};                              \
        return operation arguments;                                       \
    }
#define FABRIX_HAP_OPAQUE(result, name)                                                                             \
    std::atomic<result (*)(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t)> \
        m_P##name{nullptr};                                                                                         \
    extern "C" result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6,      \
                           uintptr_t a7, uintptr_t a8) {                                                            \
        ensureLoaded();                                                                                             \
        const auto operation = m_P##name.load(std::memory_order_acquire);                                           \
        if (operation == nullptr) return {};                                                                        \
        return operation(a1, a2, a3, a4, a5, a6, a7, a8);                                                           \
    }
#include "fabrix/runtime_operations.inc"

extern "C" int HAPRT_OpenLib(void) {
    try {
        const tavo::platform::LibraryLoad load("haprt");
        if (load.handle == nullptr) return FG_ERROR;
        resolveAll(load.handle);
        return FG_OK;
    } catch (const std::exception&) {
        return FG_ERROR;
    }
}
