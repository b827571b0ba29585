#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/AppletLibrary.h"

namespace quillon::host {

/// A runtime library as the applet finds it.
struct RuntimeLibrary {
    std::string fileName;  ///< for example "libtavo_hw.so"
    std::string path;      ///< where it is looked for; empty without an installation directory
    bool isLoaded = false;
    std::string reason;                          ///< why it is not loaded; empty when it is
    std::vector<std::string> missingOperations;  ///< operations of known signature that the loaded library lacks
    std::vector<std::string> missingOpaque;      ///< lacking operations that the applet only passes on
    size_t operations = 0;                       ///< how many it should have, of both kinds
};

/// \return the directory below which the applet looks for its runtime libraries: the one that holds the folder bin,
///         dll, lib, lib64 or Hardware Applets in which the applet lies, else what TAVODIR5_32 or TAVODIR5 names
std::optional<std::string> installationDirectory(const AppletLibrary& applet);

/// Lets the applet load its two runtime libraries, hardware access first, and tells how it went.
std::vector<RuntimeLibrary> loadRuntimeLibraries(const AppletLibrary& applet);

/// \return whether the loaded hardware-access library is the software board
bool isSoftwareBoard(const RuntimeLibrary& hardwareAccess);

/// \param number 0 or more
/// \return the device handle of a board of the software board; null when another library is loaded
FgDevice* softwareBoardDevice(const RuntimeLibrary& hardwareAccess, int number);

/// Finds the device of a board, for Grabber: boards are independent, each may have a grabber of its own.
/// \param number 0 or more
/// \return the device handle, null for board 0. Further boards are those of the software board; on hardware their
///         handles are issued by the board's own library, and Grabber takes them as they are.
/// \throws HostError with 0 where the loaded library issues no such board
FgDevice* boardDevice(const AppletLibrary& applet, int number);

/// \return the software board's own words about the call that it refused last; empty when it refused none or when
///         another library is loaded
std::string softwareBoardMessage(const RuntimeLibrary& hardwareAccess);

}  // namespace quillon::host
