#include "tavo_hal/src/platform/InstallationDirectory.h"

#include <dlfcn.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tavo::platform {
namespace {

constexpr std::array<std::string_view, 5> kMarkerFolders{"bin", "dll", "Hardware Applets", "lib", "lib64"};

bool isMarkerFolder(std::string_view name) {
    return std::any_of(kMarkerFolders.begin(), kMarkerFolders.end(), [name](std::string_view marker) {
        return name.size() == marker.size() && strncasecmp(name.data(), marker.data(), marker.size()) == 0;
    });
}

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (!path.empty() && path.back() == '/') path.remove_suffix(1);
    return path;
}

/// \return the path under which this library was opened; links are not resolved
std::string_view ownFilePath() {
    Dl_info info{};
    if (dladdr(&TavoLibStatic<>::gmIsInitialized, &info) == 0 || info.dli_fname == nullptr) return {};
    return info.dli_fname;
}

}  // namespace

std::optional<std::string> directoryFromFilePath(std::string_view file) {
    if (file.size() >= kPathCapacity) return std::nullopt;
    size_t slash = file.rfind('/');
    if (slash == 0) return std::nullopt;

    std::string_view path = file;
    while (slash != std::string_view::npos) {
        path = withoutTrailingSlashes(path.substr(0, slash));
        slash = path.rfind('/');
        const size_t start = slash == std::string_view::npos ? 0 : slash + 1;
        if (!isMarkerFolder(path.substr(start))) continue;
        const bool isRelativeToWorkingFolder = start == 0;
        return isRelativeToWorkingFolder ? "." : std::string(withoutTrailingSlashes(path.substr(0, start)));
    }
    return std::nullopt;
}

std::optional<std::string> directoryFromEnvironment() {
    const char* value = std::getenv("TAVODIR5_32");
    if (value == nullptr) value = std::getenv("TAVODIR5");
    if (value == nullptr) return std::nullopt;
    std::string_view path = value;
    path = path.substr(0, kPathCapacity - 1);
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    return std::string(path);
}

std::optional<std::string> installationDirectory() {
    const std::scoped_lock lock(TavoLibStatic<>::gmInitLock);
    if (TavoLibStatic<>::gmIsInitialized == 0) {
        std::optional<std::string> found = directoryFromFilePath(ownFilePath());
        if (!found) found = directoryFromEnvironment();
        if (!found) return std::nullopt;
        TavoLibStatic<>::gmTavoDir[found->copy(TavoLibStatic<>::gmTavoDir, kPathCapacity - 1)] = '\0';
        TavoLibStatic<>::gmIsInitialized = 1;
    }
    return TavoLibStatic<>::gmTavoDir;
}

}  // namespace tavo::platform
