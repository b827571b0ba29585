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
#include "Completion.h"
#include "Session.h"
#include "ToolError.h"
#include "host/HostError.h"

namespace {

using quillon::tool::Command;
using quillon::tool::Session;
using quillon::tool::SessionOptions;
using quillon::tool::ToolError;

struct CommandRow {
    const char* name;
    const char* summary;
    const char* example;
    std::unique_ptr<Command> (*make)(CLI::App& options);
    unsigned options = 0;  ///< of CommonOption
};

/// Options that many commands have.
enum CommonOption : unsigned { kJson = 1, kPort = 2 };

// Examples stand on lines of their own: with them the columns would not fit.
// clang-format off
constexpr std::array kCommands{
    CommandRow{"info", "Show what the applet is and which board it runs on",
               "quillon info", quillon::tool::makeInfoCommand, kJson},
    CommandRow{"list", "List parameters: value, unit, access, limits and entries",
               "quillon list offset", quillon::tool::makeListCommand, kJson | kPort},
    CommandRow{"describe", "Tell everything about one parameter: limits, entries, access now, what it depends on",
               "quillon describe FG_EXPOSURE --set FG_TRIGGERMODE=GRABBER_CONTROLLED",
               quillon::tool::makeDescribeCommand, kJson | kPort},
    CommandRow{"devices", "Show the board and its camera link",
               "quillon devices", quillon::tool::makeDevicesCommand, kJson},
    CommandRow{"doctor", "Examine installation, libraries, design, registers and link; say what to do",
               "quillon doctor", quillon::tool::makeDoctorCommand, kJson},
    CommandRow{"get", "Print the values of parameters",
               "quillon get FG_WIDTH height", quillon::tool::makeGetCommand, kJson | kPort},
    CommandRow{"registers", "Show the registers of the design: width, direction, value",
               "quillon registers gen --set FG_GEN_ROLL=3", quillon::tool::makeRegistersCommand, kJson},
    CommandRow{"acquire", "Acquire pictures, save them and print statistics",
               "quillon acquire -n 20 --set FG_WIDTH=512 --set FG_HEIGHT=384 --output out/frame_%03d.png",
               quillon::tool::makeAcquireCommand},
    CommandRow{"view", "Show a live picture in the terminal",
               "quillon view --camera simulation/pictures", quillon::tool::makeViewCommand},
    CommandRow{"shell", "Run several commands on one board that stays open",
               "printf 'set FG_WIDTH=512\\nacquire -n 3\\n' | quillon shell", quillon::tool::makeShellCommand},
    CommandRow{"save", "Save the parameters to a configuration file (.mcf)",
               "quillon save camera.mcf --set FG_WIDTH=512", quillon::tool::makeSaveCommand, kPort},
    CommandRow{"set", "Set parameters in a configuration file",
               "quillon set --config camera.mcf FG_WIDTH=512 FG_HEIGHT=384", quillon::tool::makeSetCommand, kPort},
    CommandRow{"diff", "Compare a configuration file with the defaults, or two of them; exit code 1 when they differ",
               "quillon diff camera.mcf", quillon::tool::makeDiffCommand, kJson},
    CommandRow{"xml", "Print the GenICam description of the parameters",
               "quillon xml --output parameters.xml", quillon::tool::makeXmlCommand, kPort},
    CommandRow{"tree", "Print the groups of the parameters as a tree",
               "quillon tree", quillon::tool::makeTreeCommand, kJson | kPort},
    CommandRow{"lut", "Show, save and load the knee curve",
               "quillon lut show --set FG_KNEE_LUT_GAMMA=2 --output curve.png", quillon::tool::makeLutCommand, kJson},
    CommandRow{"help", "Show the help of a command, or the manual page",
               "quillon help acquire", quillon::tool::makeHelpCommand},
};
// clang-format on

/// First word of a command line that a shell wants to be completed; it stands in no help.
constexpr const char* kComplete = "__complete";

constexpr int kHighestBoard = 255;

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

/// Prints what the last of the words can become, one a line.
int complete(const CLI::App& app, const std::vector<std::string>& words) {
    for (const std::string& text : quillon::tool::completions(app, words)) fmt::print("{}\n", text);
    return flushOutput(quillon::tool::kExitOk);
}

/// The options of every command; they may stand before and behind its name.
void addGlobalOptions(CLI::App& app, std::string& appletPath, SessionOptions& options) {
    app.set_version_flag("--version", "quillon " QUILLON_VERSION);
    app.add_option("--applet", appletPath, "applet library; the default is the one installed with this program")
        ->type_name("PATH");
    app.add_flag("--simulate", options.isSimulated, "use the installed software board, not the bench's hardware")
        ->excludes("--applet");
    app.add_option("--board", options.board, "board to open")
        ->check(CLI::Range(0, kHighestBoard))
        ->type_name("N")
        ->capture_default_str();
    app.add_flag("--trace", options.isTraced, "print every call of the applet, with arguments and result, to stderr");
}

void addCommonOptions(CLI::App& command, unsigned chosen, SessionOptions& options) {
    if ((chosen & kJson) != 0) command.add_flag("--json", options.isJson, "print a JSON document");
    if ((chosen & kPort) == 0) return;
    command.add_option("--port", options.port, "camera port")
        ->check(CLI::Range(0, 1))
        ->type_name("PORT")
        ->capture_default_str();
}

/// Says which commands there are, to somebody who gave none of them.
int reportNoCommand(const CLI::App& app) {
    const std::vector<std::string> words = app.remaining();
    std::vector<const char*> names;
    names.reserve(kCommands.size());
    for (const CommandRow& row : kCommands) names.push_back(row.name);
    return report(
        quillon::tool::kExitUsage,
        fmt::format("{}; there are {}\nRun with --help for more information.",
                    words.empty() ? "a command is missing" : fmt::format("there is no command '{}'", words.front()),
                    fmt::join(names, ", ")));
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that leaves and a file that grows too large are write errors with a message, not sudden deaths.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app("Runs a frame grabber applet from the command line.", "quillon");
    app.footer(kFooter);
    app.require_subcommand(1);
    std::string appletPath;
    SessionOptions sessionOptions;
    addGlobalOptions(app, appletPath, sessionOptions);
    std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands;
    for (const CommandRow& row : kCommands) {
        CLI::App* options = app.add_subcommand(row.name, row.summary);
        options->fallthrough();
        options->footer(fmt::format("Example:\n  {}", row.example));
        addCommonOptions(*options, row.options, sessionOptions);
        commands.emplace_back(options, row.make(*options));
    }
    if (argc > 1 && std::strcmp(argv[1], kComplete) == 0) return complete(app, {argv + 2, argv + argc});
    try {
        app.parse(argc, argv);
    } catch (const CLI::RequiredError& error) {
        if (app.get_subcommands().empty()) return reportNoCommand(app);
        app.exit(error);
        return quillon::tool::kExitUsage;
    } catch (const CLI::ParseError& error) {
        const int result = app.exit(error);
        return result == 0 ? flushOutput(0) : quillon::tool::kExitUsage;
    }
    sessionOptions.appletPath = appletPath;
    for (const auto& [options, command] : commands) {
        if (!options->parsed()) continue;
        Session session(sessionOptions);
        return flushOutput(runGuarded(*command, session));
    }
    return quillon::tool::kExitUsage;
}
