#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <string>

#include "AppletFiles.h"
#include "Command.h"
#include "Session.h"
#include "StateOptions.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

class SaveCommand : public Command {
public:
    explicit SaveCommand(CLI::App& options) : mState(options) {
        options.add_option("FILE", mFile, "configuration file (.mcf) to make or to replace");
    }

    int run(Session& session) override {
        if (mFile.empty()) {
            throw ToolError(kExitUsage, "name the file before all --set, for example 'quillon save camera.mcf'");
        }
        checkName(mFile, kConfigurationFile);
        mState.check();
        host::Grabber& grabber = session.grabber();
        mState.apply(grabber, session.port());
        saveConfiguration(grabber, mFile);
        fmt::print("saved {}\n", mFile);
        return kExitOk;
    }

private:
    StateOptions mState;
    std::string mFile;
};

}  // namespace

std::unique_ptr<Command> makeSaveCommand(CLI::App& options) { return std::make_unique<SaveCommand>(options); }

}  // namespace quillon::tool
