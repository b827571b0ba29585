#include "Session.h"

#include <fmt/format.h>

#include <cstdio>
#include <system_error>
#include <utility>
#include <vector>

#include "AppletFiles.h"
#include "Refusal.h"
#include "ToolError.h"
#include "ValueText.h"
#include "host/ResultCodes.h"
#include "host/RuntimeLibraries.h"

namespace quillon::tool {

namespace {

/// Says what a runtime library lacks; empty when it is loaded and complete.
std::string complaintAbout(const host::RuntimeLibrary& library) {
    if (!library.isLoaded && library.path.empty()) {
        return fmt::format("{} was not found: {}", library.fileName, library.reason);
    }
    if (!library.isLoaded) {
        return fmt::format(
            "{} was looked for at {} and does not load: {}\n  put it there; for an applet outside an installation, "
            "TAVODIR5_32 or TAVODIR5 names the one to use",
            library.fileName, library.path, library.reason);
    }
    if (!library.missingOperations.empty()) {
        return fmt::format("{} lacks {} operations, the first is {}; install the library that belongs to this applet",
                           library.path, library.missingOperations.size(), library.missingOperations.front());
    }
    return {};
}

/// Adds the software board's words to an error with a code that is not the applet's own.
std::string withBoardMessage(const host::HostError& error, const host::RuntimeLibrary& hardwareAccess) {
    const bool isOfBoard = error.code() < 0 && host::findResultCode(error.code()) == nullptr;
    const std::string message = isOfBoard ? host::softwareBoardMessage(hardwareAccess) : "";
    return message.empty() ? error.what() : fmt::format("{}\n  {}", error.what(), message);
}

/// Finds out why the board did not open: a missing library says more than the code that follows from it.
std::string explainOpenFailure(const host::AppletLibrary& applet, const host::HostError& error) {
    const std::vector<host::RuntimeLibrary> libraries = host::loadRuntimeLibraries(applet);
    std::string text = withBoardMessage(error, libraries.front());
    for (const host::RuntimeLibrary& library : libraries) {
        const std::string complaint = complaintAbout(library);
        if (!complaint.empty()) text += "\n  " + complaint;
    }
    return text;
}

/// \param tree folder of an installation tree below that of this program
std::filesystem::path installedApplet(const std::filesystem::path& tree) {
    std::error_code problem;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", problem);
    if (problem) throw ToolError(kExitEnvironment, "cannot find this program's own folder; use --applet PATH");
    return program.parent_path().parent_path() / tree / "Hardware Applets" / "fabrixIV" / "libQuillon.so";
}

}  // namespace

std::filesystem::path installedAppletPath() { return installedApplet({}); }

std::filesystem::path simulationAppletPath() {
    std::filesystem::path path = installedApplet(std::filesystem::path("lib") / "quillon-simulation");
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        throw ToolError(kExitEnvironment,
                        fmt::format("the software board is not installed: there is no {}\n  install the package "
                                    "quillon-simulation",
                                    path.string()));
    }
    return path;
}

Session::Session(SessionOptions options) : mOptions(std::move(options)) {}

const host::AppletLibrary& Session::applet() {
    if (!mApplet) {
        const bool isChosen = !mOptions.appletPath.empty();
        const auto installed = [&] { return mOptions.isSimulated ? simulationAppletPath() : installedAppletPath(); };
        mApplet.emplace(isChosen ? mOptions.appletPath : installed());
        if (mOptions.isTraced) mApplet->traceCalls(stderr);
    }
    return *mApplet;
}

FgDevice* Session::device() {
    const host::AppletLibrary& library = applet();
    try {
        return host::boardDevice(library, mOptions.board);
    } catch (const host::HostError& error) {
        const std::string complaint = complaintAbout(host::loadRuntimeLibraries(library).front());
        const std::string text = fmt::format("{}; this tool opens board 0 there: use --board 0", error.what());
        throw ToolError(kExitEnvironment, complaint.empty() ? text : complaint);
    }
}

host::Grabber& Session::grabber() {
    if (!mGrabber) {
        try {
            mGrabber.emplace(applet(), device());
        } catch (const host::HostError& error) {
            if (error.code() == 0) throw;
            throw ToolError(kExitEnvironment, explainOpenFailure(*mApplet, error));
        }
    }
    return *mGrabber;
}

void Session::close() { mGrabber.reset(); }

std::string Session::explain(const host::HostError& error) const {
    return mApplet ? withBoardMessage(error, host::loadRuntimeLibraries(*mApplet).front()) : error.what();
}

const host::ParameterInfo& parameterByName(const host::ParameterCatalogue& catalogue, const std::string& name) {
    const host::ParameterInfo* parameter = catalogue.find(name);
    if (parameter != nullptr) return *parameter;
    const std::vector<std::string> near = catalogue.suggestions(name);
    const std::string remedy =
        near.empty() ? "'quillon list' shows them all" : fmt::format("did you mean {}?", fmt::join(near, ", "));
    throw ToolError(kExitUsage, fmt::format("there is no parameter '{}'; {}", name, remedy));
}

void applySetting(host::Grabber& grabber, const std::string& assignment, int port) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw ToolError(kExitUsage, fmt::format("'{}' is no setting; write NAME=VALUE", assignment));
    }
    // Every write may change limits, access and entries of other parameters.
    const host::ParameterCatalogue catalogue(grabber, port);
    const host::ParameterInfo& parameter = parameterByName(catalogue, assignment.substr(0, equals));
    const host::ParameterValue value = parseValue(parameter, assignment.substr(equals + 1));
    const int code = host::writeValue(grabber, parameter, value, port);
    if (code >= 0) return;
    throw ToolError(kExitRefused, parameter.id == FG_KNEE_LUT_SAVE_LOAD_FILE
                                      ? explainLutAction(grabber, std::get<int32_t>(value), code)
                                      : explainRefusal(catalogue, parameter, value, code));
}

}  // namespace quillon::tool
