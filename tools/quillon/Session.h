#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/AppletLibrary.h"
#include "host/Grabber.h"
#include "host/HostError.h"
#include "host/ParameterCatalogue.h"

namespace quillon::tool {

/// What the options of every command say.
struct SessionOptions {
    std::filesystem::path appletPath;  ///< empty: the applet of the installation that the tool is in
    bool isSimulated = false;          ///< with an empty path: the applet of the software board's tree
    int board = 0;
    int port = 0;
    bool isJson = false;    ///< data is printed as a JSON document
    bool isTraced = false;  ///< every exported call is written to standard error
};

/// The applet and the board of one run of the tool, each opened when it is first needed. Used by one thread.
class Session {
public:
    explicit Session(SessionOptions options);

    [[nodiscard]] int port() const { return mOptions.port; }
    [[nodiscard]] int board() const { return mOptions.board; }
    [[nodiscard]] bool isJson() const { return mOptions.isJson; }

    /// \throws host::HostError when the library is no applet
    const host::AppletLibrary& applet();
    /// \throws ToolError that says what is missing when the board does not open
    host::Grabber& grabber();
    /// Closes the board; the next use opens it anew, with every parameter at its default.
    void close();

    /// \return the error's text, and below it what the software board says about a code of its own
    [[nodiscard]] std::string explain(const host::HostError& error) const;

private:
    FgDevice* device();

    const SessionOptions mOptions;
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
void applySetting(host::Grabber& grabber, const std::string& assignment, int port = 0);

}  // namespace quillon::tool
