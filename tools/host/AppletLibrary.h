#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "fabrix/applet.h"
#include "fabrix/haprt.h"
#include "fabrix/tavo_hw.h"

namespace quillon::host {

/// The exported functions that the host library calls, as pointers into one applet library.
struct AppletFunctions {
    decltype(&::Std_entry) stdEntry = nullptr;
    decltype(&::Info) info = nullptr;
    decltype(&::Fg_FreeGrabber) freeGrabber = nullptr;
    decltype(&::Fg_getAppletId) getAppletId = nullptr;
    decltype(&::Fg_setParameterWithType) setParameter = nullptr;
    decltype(&::Fg_getParameterWithType) getParameter = nullptr;
    decltype(&::Fg_getNrOfParameter) getNrOfParameter = nullptr;
    decltype(&::Fg_getParameterId) getParameterId = nullptr;
    decltype(&::Fg_getParameterName) getParameterName = nullptr;
    decltype(&::Fg_getParameterInfo) getParameterInfo = nullptr;
    decltype(&::Fg_getParameterInfoXML) getParameterInfoXml = nullptr;
    decltype(&::Fg_saveConfig) saveConfig = nullptr;
    decltype(&::Fg_loadConfig) loadConfig = nullptr;
    decltype(&::Fg_getLastErrorNumber) getLastErrorNumber = nullptr;
    decltype(&::Fg_AcquireEx) acquire = nullptr;
    decltype(&::Fg_stopAcquireEx) stopAcquire = nullptr;
    decltype(&::Fg_getLastPicNumberBlockingEx) getLastPicNumberBlocking = nullptr;
    decltype(&::SHW_OpenLib) openHardwareLibrary = nullptr;
    decltype(&::HAPRT_OpenLib) openRuntimeLibrary = nullptr;
    decltype(&::HapGetUserInfoByName) getUserInfoByName = nullptr;
    decltype(&::HapGetRegisterByName) getRegisterByName = nullptr;
    decltype(&::TavoGetVirtualUserBuffer) getVirtualUserBuffer = nullptr;
    decltype(&::TavoFreeVirtualUserBuffer) freeVirtualUserBuffer = nullptr;
    decltype(&::TavoAddUserBuffer) addUserBuffer = nullptr;
    decltype(&::TavoDelUserBuffer) delUserBuffer = nullptr;
    decltype(&::TavoDmaTestBuffer) dmaTestBuffer = nullptr;
    decltype(&::TavoGetDmaTag) getDmaTag = nullptr;
    decltype(&::TavoGetDmaTimeStampLong) getDmaTimeStampLong = nullptr;
    decltype(&::TavoGetDmaLength) getDmaLength = nullptr;
};

/// An applet library that is open in this process. It must outlive every Grabber made from it; any thread may use it.
class AppletLibrary {
public:
    /// Opens the library and finds its functions.
    /// \throws HostError when the file is missing, does not open, or is no applet
    explicit AppletLibrary(const std::filesystem::path& path);
    AppletLibrary(const AppletLibrary&) = delete;
    AppletLibrary& operator=(const AppletLibrary&) = delete;
    ~AppletLibrary();

    [[nodiscard]] const std::filesystem::path& path() const { return mPath; }
    [[nodiscard]] const AppletFunctions& functions() const { return mFunctions; }

    /// Writes every call from now on, with its arguments and its result, as a line to \p stream, which is borrowed for
    /// the life of the process. Call it before the first Grabber, and for one library of a process only.
    void traceCalls(std::FILE* stream);

    /// \return the applet's answer, FG_NOT_SUPPORTED for a question that it does not answer
    [[nodiscard]] int infoNumber(AppletInfos question, int argument = 0) const;
    /// \return the text, or an empty one when the applet has none
    [[nodiscard]] std::string infoText(AppletInfos question) const;
    /// \return the bytes of the applet's icon, a PNG picture; 0 when it has none
    [[nodiscard]] int iconSize() const;
    /// \return the design that was loaded last, or null
    [[nodiscard]] fpga_design* design() const;
    /// \return whether the design that was loaded last has a register of this name
    [[nodiscard]] bool hasDesignRegister(const char* name) const;

private:
    std::filesystem::path mPath;
    void* mHandle = nullptr;
    AppletFunctions mFunctions;
};

}  // namespace quillon::host
