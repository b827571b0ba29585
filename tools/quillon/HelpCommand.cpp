#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <string>

#include "Command.h"
#include "ManualPage.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

class HelpCommand : public Command {
public:
    explicit HelpCommand(CLI::App& options) : mProgram(*options.get_parent()) {
        options.add_option("COMMAND", mCommand, "command to tell about; without it, all of them");
        options.add_flag("--man", mIsManual, "print the manual page, for example into quillon.1");
    }

    int run(Session& /*session*/) override {
        if (mIsManual) {
            fmt::print("{}", manualPage(mProgram));
            return kExitOk;
        }
        // The program's own help would be that of this command, which the command line chose.
        const auto isWanted = [this](const CLI::App* command) { return command->get_name() == mCommand; };
        const auto found = mProgram.get_subcommands(isWanted);
        if (!mCommand.empty() && found.empty()) {
            throw ToolError(kExitUsage,
                            fmt::format("there is no command '{}'; 'quillon help' shows them all", mCommand));
        }
        mProgram.clear();
        fmt::print("{}", found.empty() ? mProgram.help() : found.front()->help(mProgram.get_name()));
        return kExitOk;
    }

private:
    CLI::App& mProgram;
    std::string mCommand;
    bool mIsManual = false;
};

}  // namespace

std::unique_ptr<Command> makeHelpCommand(CLI::App& options) { return std::make_unique<HelpCommand>(options); }

}  // namespace quillon::tool
