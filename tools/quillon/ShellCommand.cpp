#include <unistd.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <memory>
#include <string>

#include "Command.h"
#include "LineSource.h"
#include "PictureSource.h"
#include "Session.h"
#include "Shell.h"
#include "StateOptions.h"
#include "StopSignals.h"

namespace quillon::tool {

namespace {

class ShellCommand : public Command {
public:
    explicit ShellCommand(CLI::App& options) : mSource(options), mState(options) {
        options.add_option("SCRIPT", mScript, "file of commands; otherwise they come from the terminal or a pipe");
        options.add_flag("--keep-going", mKeepsGoing, "go on after a command that failed");
    }

    int run(Session& session) override {
        mState.check();
        mSource.prepareCamera();
        StopSignals signals;
        Shell shell(session, signals);
        const std::unique_ptr<LineSource> lines = openLines(shell);
        host::Grabber& grabber = session.grabber();
        mState.load(grabber);
        mSource.select(grabber);
        mState.set(grabber);
        return shell.run(*lines, mKeepsGoing);
    }

private:
    [[nodiscard]] std::unique_ptr<LineSource> openLines(Shell& shell) const {
        if (!mScript.empty()) return openScript(mScript);
        if (isatty(STDIN_FILENO) != 1) return openPipe();
        return openTerminal(
            [&shell](const std::string& before, const std::string& word) { return shell.complete(before, word); });
    }

    PictureSource mSource;
    StateOptions mState;
    std::string mScript;
    bool mKeepsGoing = false;
};

}  // namespace

std::unique_ptr<Command> makeShellCommand(CLI::App& options) { return std::make_unique<ShellCommand>(options); }

}  // namespace quillon::tool
