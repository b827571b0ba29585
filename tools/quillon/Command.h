#pragma once

#include <memory>

namespace CLI {
class App;
}

namespace quillon::tool {

class Session;

/// One command of the tool. Made for its subcommand of the command line, to which it adds its options; run at most
/// once, after the command line has been read.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// \return the exit code of the process
    /// \throws ToolError or host::HostError when it cannot be done
    virtual int run(Session& session) = 0;
};

std::unique_ptr<Command> makeInfoCommand(CLI::App& options);
std::unique_ptr<Command> makeListCommand(CLI::App& options);
std::unique_ptr<Command> makeGetCommand(CLI::App& options);
std::unique_ptr<Command> makeDescribeCommand(CLI::App& options);
std::unique_ptr<Command> makeDevicesCommand(CLI::App& options);
std::unique_ptr<Command> makeDoctorCommand(CLI::App& options);
std::unique_ptr<Command> makeHelpCommand(CLI::App& options);
std::unique_ptr<Command> makeRegistersCommand(CLI::App& options);
std::unique_ptr<Command> makeAcquireCommand(CLI::App& options);
std::unique_ptr<Command> makeViewCommand(CLI::App& options);
std::unique_ptr<Command> makeShellCommand(CLI::App& options);
std::unique_ptr<Command> makeSaveCommand(CLI::App& options);
std::unique_ptr<Command> makeSetCommand(CLI::App& options);
std::unique_ptr<Command> makeDiffCommand(CLI::App& options);
std::unique_ptr<Command> makeXmlCommand(CLI::App& options);
std::unique_ptr<Command> makeTreeCommand(CLI::App& options);
std::unique_ptr<Command> makeLutCommand(CLI::App& options);

}  // namespace quillon::tool
