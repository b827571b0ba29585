#include "host/AppletLibrary.h"

#include <dlfcn.h>

#include <bit>
#include <system_error>
#include <type_traits>

#include "host/AppletFunctionTable.h"
#include "host/CallTrace.h"
#include "host/HostError.h"

namespace quillon::host {

namespace {

std::string loaderMessage() {
    const char* text = dlerror();
    return text == nullptr ? "unknown reason" : text;
}

void* openLibrary(const std::filesystem::path& path) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) throw HostError(0, "there is no applet library " + path.string());
    // A path without a slash would be searched in the system's library folders.
    const std::filesystem::path file = path.has_parent_path() ? path : "." / path;
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) throw HostError(0, "the applet library does not open: " + loaderMessage());
    return handle;
}

/// Finds the functions of an open library.
/// \return the name of the first one that the library lacks, or null
const char* resolveAll(void* handle, AppletFunctions& functions) {
    const char* missing = nullptr;
    const auto resolve = [&](const auto& row) {
        auto& function = functions.*row.kMember;
        function = std::bit_cast<std::remove_reference_t<decltype(function)>>(dlsym(handle, row.name));
        if (function == nullptr && missing == nullptr) missing = row.name;
    };
    std::apply([&](const auto&... rows) { (resolve(rows), ...); }, kAppletFunctions);
    return missing;
}

}  // namespace

AppletLibrary::AppletLibrary(const std::filesystem::path& path) : mPath(path), mHandle(openLibrary(path)) {
    const char* missing = resolveAll(mHandle, mFunctions);
    if (missing != nullptr) {
        dlclose(mHandle);
        throw HostError(0, path.string() + " is no applet library: it lacks the function " + missing);
    }
}

AppletLibrary::~AppletLibrary() { dlclose(mHandle); }

void AppletLibrary::traceCalls(std::FILE* stream) { traceFunctions(mFunctions, stream); }

int AppletLibrary::infoNumber(AppletInfos question, int argument) const {
    return mFunctions.info(question, argument, 0, nullptr, nullptr);
}

std::string AppletLibrary::infoText(AppletInfos question) const {
    const void* text = nullptr;
    if (mFunctions.info(question, 0, 0, nullptr, &text) < 0 || text == nullptr) return {};
    return static_cast<const char*>(text);
}

int AppletLibrary::iconSize() const {
    int size = 0;
    return mFunctions.info(GET_PNG_ICON, 0, 0, &size, nullptr) < 0 ? 0 : size;
}

bool AppletLibrary::hasDesignRegister(const char* name) const {
    fpga_design* loaded = design();
    return loaded != nullptr && mFunctions.getRegisterByName(loaded, name) != 0;
}

fpga_design* AppletLibrary::design() const {
    fpga_design* design = nullptr;
    return mFunctions.info(GET_INFO_DESIGN_HANDLE, 0, 0, &design, nullptr) < 0 ? nullptr : design;
}

}  // namespace quillon::host
