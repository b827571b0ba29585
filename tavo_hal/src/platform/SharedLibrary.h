#pragma once

#include <dlfcn.h>

#include <atomic>
#include <bit>
#include <string>

namespace tavo::platform {

/// Reinterprets the address of a symbol as a function pointer.
template <class Function>
Function funcptr_cast(void* address) {
    return std::bit_cast<Function>(address);
}

/// Looks up a function of an open library.
/// \return the function, or null for a null handle or a missing symbol
template <class Function>
Function Shlib_LoadSymbol(void* handle, const char* symbol) {
    return handle == nullptr ? nullptr : funcptr_cast<Function>(dlsym(handle, symbol));
}

/// Stores the function \p symbol of \p handle in \p operation: null when it is missing.
template <class Function>
void resolveOperation(void* handle, const char* symbol, std::atomic<Function>& operation) {
    operation.store(Shlib_LoadSymbol<Function>(handle, symbol), std::memory_order_release);
}

/// One attempt to load a runtime library from the installation directory. The library stays open.
struct LibraryLoad {
    /// Finds the installation directory and opens "lib/lib<name>.so" in it with all symbols bound.
    explicit LibraryLoad(const char* name);
    LibraryLoad(const LibraryLoad&) = delete;
    LibraryLoad& operator=(const LibraryLoad&) = delete;
    ~LibraryLoad();

    void* handle = nullptr;     ///< null when there is no directory or the library does not open
    bool closesAgain = false;   ///< whether the library is closed with this record; never set
    std::string path;           ///< full path of the library; empty without an installation directory
    std::string lastErrorText;  ///< what the dynamic loader said when it did not open
};

}  // namespace tavo::platform
