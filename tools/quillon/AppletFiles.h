#pragma once

#include <filesystem>
#include <string>

#include "host/Grabber.h"

namespace quillon::tool {

/// A kind of file that the applet itself reads and writes. It looks at the name only for the ending.
struct AppletFileKind {
    const char* name;
    const char* ending;   ///< must stand somewhere in the name
    const char* example;  ///< a name that is taken
};
inline constexpr AppletFileKind kConfigurationFile{"configuration file", ".mcf", "camera.mcf"};
inline constexpr AppletFileKind kLutFile{"LUT file", ".lut", "curve.lut"};

/// \throws ToolError when the applet does not take a file of this name
void checkName(const std::filesystem::path& file, const AppletFileKind& kind);

/// \throws ToolError when the name is refused, or when there is no such file or it cannot be read
void checkReadable(const std::filesystem::path& file, const AppletFileKind& kind);

/// Loads a configuration file.
/// \throws ToolError that names the file, why it is refused and what to do
void loadConfiguration(host::Grabber& grabber, const std::filesystem::path& file);

/// Saves a configuration file; an older one survives a failure.
/// \throws ToolError that names the file and why it cannot be saved
void saveConfiguration(const host::Grabber& grabber, const std::filesystem::path& file);

/// \return what the applet would save to a configuration file now
/// \throws ToolError when there is no room for a temporary file
std::string savedText(const host::Grabber& grabber);

/// Loads a LUT file into the knee curve.
/// \throws ToolError as loadConfiguration does
void loadLut(host::Grabber& grabber, const std::filesystem::path& file);

/// Saves the knee curve to a LUT file; an older one survives a failure.
/// \throws ToolError as saveConfiguration does
void saveLut(host::Grabber& grabber, const std::filesystem::path& file);

/// Explains why the file action of the knee table was refused: names FG_KNEE_LUT_FILE, the reason and the remedy.
/// \param action value of FG_KNEE_LUT_SAVE_LOAD_FILE
/// \param code the applet's answer
std::string explainLutAction(const host::Grabber& grabber, int action, int code);

}  // namespace quillon::tool
