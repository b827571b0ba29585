#include "tavo_hal/src/hw/tavo_hw_loader.h"

#include <exception>
#include <tuple>
#include <type_traits>

#include "tavo_hal/src/platform/SharedLibrary.h"

namespace {

/// What an operation answers for a null device, or while it is missing: null for a pointer, else -6.
template <class Result>
Result missing() {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return static_cast<Result>(FG_NO_DEVICE);
    }
}

void ensureLoaded() {
    // A failed load shows in the operation, which stays null.
    if (m_PTavoRegisterRead.load(std::memory_order_acquire) == nullptr) std::ignore = SHW_OpenLib();
}

void resolveAll(void* library) {
    using tavo::platform::resolveOperation;
#define FABRIX_TAVO(result, name, parameters, arguments)                            \
    if (static_cast<void*>(&m_P##name) != static_cast<void*>(&m_PTavoRegisterRead)) \
        resolveOperation(library, #name, m_P##name);
#define FABRIX_TAVO_OPAQUE(result, name) resolveOperation(library, #name, m_P##name);
#define FABRIX_TAVO_NO_DEVICE(result, name) resolveOperation(library, #name, m_P##name);
#include "fabrix/runtime_operations.inc"
    // The sentinel comes last: who sees it sees the whole table.
    resolveOperation(library, "TavoRegisterRead", m_PTavoRegisterRead);
}

}  // namespace

// The table, and one exported function an operation.
#define FABRIX_TAVO(result, name, parameters, arguments)                                            \
    std::atomic<result(*) parameters> m_P##name{nullptr};                                           \
    extern "C" result name parameters {                                                             \
        ensureLoaded();                                                                             \
        const auto operation = m_P##name.load(std::memory_order_acquire);                           \
        return device == nullptr || operation == nullptr ? missing<result>() : operation arguments; \
    }
#define FABRIX_TAVO_OPAQUE(result, name)                                                                            \
    std::atomic<result (*)(FgDevice*, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t)> \
        m_P##name{nullptr};                                                                                         \
    extern "C" result name(FgDevice* device, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6,  \
                           uintptr_t a7, uintptr_t a8) {                                                            \
        ensureLoaded();                                                                                             \
        const auto operation = m_P##name.load(std::memory_order_acquire);                                           \
        if (device == nullptr || operation == nullptr) return missing<result>();                                    \
        return operation(device, a2, a3, a4, a5, a6, a7, a8);                                                       \
    }
#define FABRIX_TAVO_NO_DEVICE(result, name)                                                                         \
    std::atomic<result (*)(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t)> \
        m_P##name{nullptr};                                                                                         \
    extern "C" result name(uintptr_t a1, uintptr_t a2, uintptr_t a3, uintptr_t a4, uintptr_t a5, uintptr_t a6,      \
                           uintptr_t a7, uintptr_t a8) {                                                            \
        ensureLoaded();                                                                                             \
        const auto operation = m_P##name.load(std::memory_order_acquire);                                           \
        return operation == nullptr ? missing<result>() : operation(a1, a2, a3, a4, a5, a6, a7, a8);                \
    }
#include "fabrix/runtime_operations.inc"

extern "C" {

int SHW_OpenLib(void) {
    try {
        const tavo::platform::LibraryLoad load("tavo_hw");
        if (load.handle == nullptr) return FG_HW_LIBRARY_MISSING;
        resolveAll(load.handle);
        return FG_OK;
    } catch (const std::exception&) {
        return FG_HW_LIBRARY_MISSING;
    }
}

int TavoFreeHW(FgDevice* /*device*/) {
    ensureLoaded();
    return FG_OK;
}

int TavoGetNrOfDevices(void) { return 0; }

int TavoGetDevicesSpecificIndex(const unsigned int /*globalIndex*/) { return 0; }

FgDevice* TavoInitHWEx(const unsigned int /*mBoardNr*/, const char* /*dllName*/) { return nullptr; }

FgDevice* TavoInitAllHWEx(const unsigned int /*mBoardNr*/) { return nullptr; }

int TavoDataQueuePoll(FgDevice* /*board*/, uint64_t* /*queues*/, unsigned int /*timeout*/) { return FG_NO_DEVICE; }
}
