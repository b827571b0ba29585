#include "host/RuntimeLibraries.h"

#include <dlfcn.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <memory>
#include <span>

#include "host/HostError.h"

namespace quillon::host {

namespace {

constexpr std::array kMarkerFolders{"bin", "dll", "Hardware Applets", "lib", "lib64"};

/// An operation of a runtime library; the applet passes opaque ones on without using them itself.
struct Operation {
    const char* name;
    bool isOpaque;
};

#define FABRIX_TAVO(result, name, parameters, arguments) {#name, false},
#define FABRIX_TAVO_OPAQUE(result, name) {#name, true},
#define FABRIX_TAVO_NO_DEVICE(result, name) {#name, true},
constexpr Operation kHardwareOperations[] = {
#include "fabrix/runtime_operations.inc"
};

#define FABRIX_HAP(result, name, parameters, arguments) {#name, false},
#define FABRIX_HAP_OPAQUE(result, name) {#name, true},
constexpr Operation kRuntimeOperations[] = {
#include "fabrix/runtime_operations.inc"
};

struct CloseLibrary {
    void operator()(void* handle) const { dlclose(handle); }
};
using LibraryHandle = std::unique_ptr<void, CloseLibrary>;

LibraryHandle loadedLibrary(const std::string& path) {
    if (path.empty()) return nullptr;
    return LibraryHandle(dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD));
}

bool isMarkerFolder(const std::string& name) {
    return std::any_of(kMarkerFolders.begin(), kMarkerFolders.end(),
                       [&](const char* marker) { return strcasecmp(marker, name.c_str()) == 0; });
}

std::optional<std::string> directoryFromEnvironment() {
    for (const char* variable : {"TAVODIR5_32", "TAVODIR5"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr) continue;
        std::string directory = value;
        while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
        return directory;
    }
    return std::nullopt;
}

/// Says why the library at \p path does not load, in the loader's words where it has any.
std::string reasonNotLoaded(const std::string& path) {
    if (path.empty()) {
        return "there is no installation directory: the applet lies in no folder bin, dll, lib, lib64 or Hardware "
               "Applets, and neither TAVODIR5_32 nor TAVODIR5 is set";
    }
    const LibraryHandle handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (handle != nullptr) return "the applet did not accept it";
    const char* text = dlerror();
    return text == nullptr ? "it does not open" : text;
}

RuntimeLibrary describe(const std::optional<std::string>& directory, const char* fileName, int result,
                        std::span<const Operation> operations) {
    RuntimeLibrary library;
    library.fileName = fileName;
    if (directory) library.path = *directory + "/lib/" + fileName;
    library.isLoaded = result >= 0;
    library.operations = operations.size();
    if (!library.isLoaded) {
        library.reason = reasonNotLoaded(library.path);
        return library;
    }
    const LibraryHandle handle = loadedLibrary(library.path);
    if (handle == nullptr) return library;
    for (const Operation& operation : operations) {
        if (dlsym(handle.get(), operation.name) != nullptr) continue;
        (operation.isOpaque ? library.missingOpaque : library.missingOperations).emplace_back(operation.name);
    }
    return library;
}

using MessageFunction = const char* (*)();

MessageFunction messageFunction(void* library) {
    return library == nullptr ? nullptr : std::bit_cast<MessageFunction>(dlsym(library, "tavo_sim_last_error"));
}

}  // namespace

std::optional<std::string> installationDirectory(const AppletLibrary& applet) {
    // The applet goes by the path under which it was opened; links in it are not resolved.
    Dl_info opened{};
    if (dladdr(std::bit_cast<void*>(applet.functions().stdEntry), &opened) != 0 && opened.dli_fname != nullptr) {
        std::filesystem::path folder = std::filesystem::path(opened.dli_fname).parent_path();
        while (!folder.empty() && folder != folder.root_path()) {
            const std::filesystem::path parent = folder.parent_path();
            if (isMarkerFolder(folder.filename().string())) {
                if (parent.empty()) return ".";
                return parent == parent.root_path() ? "" : parent.string();
            }
            folder = parent;
        }
    }
    return directoryFromEnvironment();
}

std::vector<RuntimeLibrary> loadRuntimeLibraries(const AppletLibrary& applet) {
    const std::optional<std::string> directory = installationDirectory(applet);
    const int hardwareResult = applet.functions().openHardwareLibrary();
    const int runtimeResult = applet.functions().openRuntimeLibrary();
    return {describe(directory, "libtavo_hw.so", hardwareResult, kHardwareOperations),
            describe(directory, "libhaprt.so", runtimeResult, kRuntimeOperations)};
}

bool isSoftwareBoard(const RuntimeLibrary& hardwareAccess) {
    return messageFunction(loadedLibrary(hardwareAccess.path).get()) != nullptr;
}

FgDevice* softwareBoardDevice(const RuntimeLibrary& hardwareAccess, int number) {
    const LibraryHandle handle = loadedLibrary(hardwareAccess.path);
    if (handle == nullptr) return nullptr;
    const auto open = std::bit_cast<FgDevice* (*)(int)>(dlsym(handle.get(), "tavo_sim_open"));
    return open == nullptr ? nullptr : open(number);
}

FgDevice* boardDevice(const AppletLibrary& applet, int number) {
    if (number == 0) return nullptr;
    const RuntimeLibrary hardwareAccess = loadRuntimeLibraries(applet).front();
    FgDevice* device = number < 0 ? nullptr : softwareBoardDevice(hardwareAccess, number);
    if (device != nullptr) return device;
    const std::string why = hardwareAccess.isLoaded
                                ? hardwareAccess.path + " issues no such board"
                                : hardwareAccess.fileName + " is not loaded: " + hardwareAccess.reason;
    throw HostError(0, "board " + std::to_string(number) + " cannot be opened: " + why);
}

std::string softwareBoardMessage(const RuntimeLibrary& hardwareAccess) {
    const LibraryHandle handle = loadedLibrary(hardwareAccess.path);
    const MessageFunction message = messageFunction(handle.get());
    const char* text = message == nullptr ? nullptr : message();
    return text == nullptr ? "" : text;
}

}  // namespace quillon::host
