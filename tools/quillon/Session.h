#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/AppletLibrary.h"
#include "host/Grabber.h"
#include "host/HostError.h"
#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// The applet and the board of one run of the tool, each opened when it is first needed. Used by one thread.
class Session {
public:
    /// \param appletPath applet library; an empty path is the applet of the installation that the tool is in
    /// \param isSimulated use the applet in the software board's tree instead, whatever the path
    explicit Session(const std::filesystem::path& appletPath, bool isSimulated = false);

    /// \throws host::HostError when the library is no applet
    const host::AppletLibrary& applet();
    /// \throws ToolError that says what is missing when the board does not open
    host::Grabber& grabber();
    /// Closes the board; the next use opens it anew, with every parameter at its default.
    void close();

    /// \return the error's text, and below it what the software board says about a code of its own
    std::string explain(const host::HostError& error) const;

private:
    std::filesystem::path mAppletPath;
    const bool mIsSimulated;
    std::optional<host::AppletLibrary> mApplet;
    std::optional<host::Grabber> mGrabber;
};

/// \return the applet of the installation tree that this program is in
std::filesystem::path installedAppletPath();

/// \return the applet library of the software board's own tree, which the package quillon-simulation installs
/// \throws ToolError when that tree is not installed
std::filesystem::path simulationAppletPath();

/// \return the parameter of this name
/// \throws ToolError that suggests other names when there is none
const host::ParameterInfo& parameterByName(const host::ParameterCatalogue& catalogue, const std::string& name);

/// Writes one parameter.
/// \param assignment for example "FG_WIDTH=512"
/// \throws ToolError that names parameter, value, limit and remedy when it is refused
void applySetting(host::Grabber& grabber, const std::string& assignment);

}  // namespace quillon::tool
