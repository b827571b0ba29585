#include "host/AppletLibrary.h"

#include <dlfcn.h>

#include <bit>
#include <system_error>

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

/// Looks functions up in an open library and remembers the first one that is missing.
class Resolver {
public:
    explicit Resolver(void* handle) : mHandle(handle) {}

    template <class Function>
    void operator()(Function& function, const char* name) {
        void* address = dlsym(mHandle, name);
        if (address == nullptr && mMissing == nullptr) mMissing = name;
        function = std::bit_cast<Function>(address);
    }

    [[nodiscard]] const char* missing() const { return mMissing; }

private:
    void* mHandle;
    const char* mMissing = nullptr;
};

/// \return the name of the first function that the library lacks, or null
const char* resolveAll(void* handle, AppletFunctions& f) {
    Resolver resolve(handle);
    resolve(f.stdEntry, "Std_entry");
    resolve(f.info, "Info");
    resolve(f.freeGrabber, "Fg_FreeGrabber");
    resolve(f.getAppletId, "Fg_getAppletId");
    resolve(f.setParameter, "Fg_setParameterWithType");
    resolve(f.getParameter, "Fg_getParameterWithType");
    resolve(f.getNrOfParameter, "Fg_getNrOfParameter");
    resolve(f.getParameterId, "Fg_getParameterId");
    resolve(f.getParameterName, "Fg_getParameterName");
    resolve(f.getParameterInfo, "Fg_getParameterInfo");
    resolve(f.getParameterInfoXml, "Fg_getParameterInfoXML");
    resolve(f.saveConfig, "Fg_saveConfig");
    resolve(f.loadConfig, "Fg_loadConfig");
    resolve(f.getLastErrorNumber, "Fg_getLastErrorNumber");
    resolve(f.acquire, "Fg_AcquireEx");
    resolve(f.stopAcquire, "Fg_stopAcquireEx");
    resolve(f.getLastPicNumberBlocking, "Fg_getLastPicNumberBlockingEx");
    resolve(f.openHardwareLibrary, "SHW_OpenLib");
    resolve(f.openRuntimeLibrary, "HAPRT_OpenLib");
    resolve(f.getUserInfoByName, "HapGetUserInfoByName");
    resolve(f.getVirtualUserBuffer, "TavoGetVirtualUserBuffer");
    resolve(f.freeVirtualUserBuffer, "TavoFreeVirtualUserBuffer");
    resolve(f.addUserBuffer, "TavoAddUserBuffer");
    resolve(f.delUserBuffer, "TavoDelUserBuffer");
    resolve(f.dmaTestBuffer, "TavoDmaTestBuffer");
    resolve(f.getDmaTag, "TavoGetDmaTag");
    resolve(f.getDmaTimeStampLong, "TavoGetDmaTimeStampLong");
    resolve(f.getDmaLength, "TavoGetDmaLength");
    return resolve.missing();
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

fpga_design* AppletLibrary::design() const {
    fpga_design* design = nullptr;
    return mFunctions.info(GET_INFO_DESIGN_HANDLE, 0, 0, &design, nullptr) < 0 ? nullptr : design;
}

}  // namespace quillon::host
