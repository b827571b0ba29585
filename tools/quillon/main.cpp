#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "Command.h"
#include "Session.h"
#include "ToolError.h"
#include "host/HostError.h"

namespace {

using quillon::tool::Command;
using quillon::tool::Session;
using quillon::tool::ToolError;

struct CommandRow {
    const char* name;
    const char* summary;
    const char* example;
    std::unique_ptr<Command> (*make)(CLI::App& options);
};

// Examples stand on lines of their own: with them the columns would not fit.
// clang-format off
constexpr std::array kCommands{
    CommandRow{"info", "Show what the applet is and which board it runs on",
               "quillon info", quillon::tool::makeInfoCommand},
    CommandRow{"list", "List parameters: value, unit, access, limits and entries",
               "quillon list offset", quillon::tool::makeListCommand},
    CommandRow{"get", "Print the values of parameters",
               "quillon get FG_WIDTH height", quillon::tool::makeGetCommand},
    CommandRow{"registers", "Show the registers of the design: width, direction, value",
               "quillon registers gen --set FG_GEN_ROLL=3", quillon::tool::makeRegistersCommand},
    CommandRow{"acquire", "Acquire pictures, save them and print statistics",
               "quillon acquire -n 20 --set FG_WIDTH=512 --set FG_HEIGHT=384 --output out/frame_%03d.png",
               quillon::tool::makeAcquireCommand},
    CommandRow{"save", "Save the parameters to a configuration file (.mcf)",
               "quillon save camera.mcf --set FG_WIDTH=512", quillon::tool::makeSaveCommand},
    CommandRow{"set", "Set parameters in a configuration file",
               "quillon set --config camera.mcf FG_WIDTH=512 FG_HEIGHT=384", quillon::tool::makeSetCommand},
    CommandRow{"diff", "Compare a configuration file with the defaults, or two of them; exit code 1 when they differ",
               "quillon diff camera.mcf", quillon::tool::makeDiffCommand},
    CommandRow{"xml", "Print the GenICam description of the parameters",
               "quillon xml --output parameters.xml", quillon::tool::makeXmlCommand},
    CommandRow{"tree", "Print the groups of the parameters as a tree",
               "quillon tree", quillon::tool::makeTreeCommand},
    CommandRow{"lut", "Show, save and load the knee curve",
               "quillon lut show --set FG_KNEE_LUT_GAMMA=2 --output curve.png", quillon::tool::makeLutCommand},
};
// clang-format on

constexpr const char* kFooter =
    "Opening the board sets every parameter to its default, and nothing outlives the command: --config FILE brings\n"
    "the values of a configuration file, --set changes single ones, and save and set keep them in such a file.\n"
    "Exit codes: 0 done, 1 refused by the applet, 2 wrong usage, 3 files, memory, libraries, board or camera,\n"
    "128 + N stopped by signal N (130 for Ctrl-C).";

int report(int exitCode, const std::string& text) {
    // Nothing is left to be done when the message itself cannot be written.
    std::fputs(("quillon: " + text + "\n").c_str(), stderr);
    return exitCode;
}

/// Runs a command and turns whatever ends it into a message and an exit code.
int runGuarded(Command& command, Session& session) {
    try {
        return command.run(session);
    } catch (const ToolError& error) {
        return report(error.exitCode(), error.what());
    } catch (const quillon::host::HostError& error) {
        return report(quillon::tool::kExitEnvironment, session.explain(error));
    } catch (const std::bad_alloc&) {
        return report(quillon::tool::kExitEnvironment, "out of memory");
    } catch (const std::system_error& error) {
        return report(quillon::tool::kExitEnvironment, error.what());
    } catch (const std::exception& error) {
        return report(quillon::tool::kExitEnvironment, error.what());
    }
}

/// Output that does not reach its reader makes the command fail.
int flushOutput(int exitCode) {
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return exitCode;
    // A write that failed earlier has been reported already.
    if (errno == 0 && exitCode == quillon::tool::kExitEnvironment) return exitCode;
    const std::string why = errno == 0 ? "unknown reason" : std::strerror(errno);
    return report(quillon::tool::kExitEnvironment, "the output could not be written: " + why);
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that leaves and a file that grows too large are write errors with a message, not sudden deaths.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app("Runs a frame grabber applet from the command line.", "quillon");
    app.set_version_flag("--version", "quillon " QUILLON_VERSION);
    app.footer(kFooter);
    app.require_subcommand(1);
    std::string appletPath;
    bool isSimulated = false;
    app.add_option("--applet", appletPath, "applet library; the default is the one installed with this program")
        ->type_name("PATH");
    app.add_flag("--simulate", isSimulated, "use the installed software board instead of the bench's hardware")
        ->excludes("--applet");
    std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands;
    for (const CommandRow& row : kCommands) {
        CLI::App* options = app.add_subcommand(row.name, row.summary);
        options->fallthrough();
        options->footer(fmt::format("Example:\n  {}", row.example));
        commands.emplace_back(options, row.make(*options));
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int result = app.exit(error);
        return result == 0 ? flushOutput(0) : quillon::tool::kExitUsage;
    }
    for (const auto& [options, command] : commands) {
        if (!options->parsed()) continue;
        Session session(appletPath, isSimulated);
        return flushOutput(runGuarded(*command, session));
    }
    return quillon::tool::kExitUsage;
}
