#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tavo::platform {

/// Bytes that a path may take, its terminator included.
constexpr size_t kPathCapacity = 1024;

/// The installation directory of this process, shared by both loaders. A class template, so that its members can
/// be defined in a header; there is one instance, TavoLibStatic<>.
template <class Tag = void>
struct TavoLibStatic {
    static std::mutex gmInitLock;          ///< guards the members below while the directory is sought
    static uint32_t gmIsInitialized;       ///< 1 once the directory has been found
    static char gmTavoDir[kPathCapacity];  ///< the directory, without trailing slash
};

template <class Tag>
std::mutex TavoLibStatic<Tag>::gmInitLock;
template <class Tag>
uint32_t TavoLibStatic<Tag>::gmIsInitialized = 0;
template <class Tag>
char TavoLibStatic<Tag>::gmTavoDir[kPathCapacity] = {};

/// Finds the installation directory in the path of a file installed below it: the folder that holds the innermost
/// of the folders bin, dll, Hardware Applets, lib and lib64, whatever their letter case.
/// \return the directory ("" is the root, "." the working folder), or nothing when the path has no such folder or
///         does not fit into kPathCapacity
std::optional<std::string> directoryFromFilePath(std::string_view file);

/// \return the directory that TAVODIR5_32 or, when that is not defined, TAVODIR5 names, cut to kPathCapacity - 1
///         characters and without trailing slashes; nothing when neither is defined
std::optional<std::string> directoryFromEnvironment();

/// \return the installation directory of this library; once found it stays the same for the life of the process
std::optional<std::string> installationDirectory();

}  // namespace tavo::platform
