#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "AppletFiles.h"
#include "Command.h"
#include "Session.h"
#include "ToolError.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

class SetCommand : public Command {
public:
    explicit SetCommand(CLI::App& options) {
        options.add_option("NAME=VALUE", mSettings, "settings to write, in order");
        options.add_option("--config", mFile, "configuration file (.mcf) to edit")->type_name("FILE");
        options.add_flag("--create", mMayCreate, "start from the defaults when there is no such file");
    }

    int run(Session& session) override;

private:
    /// \return whether there is a file to load
    [[nodiscard]] bool checkFile() const;
    void print(const host::Grabber& grabber, int port) const;

    std::vector<std::string> mSettings;
    std::string mFile;
    bool mMayCreate = false;
};

bool SetCommand::checkFile() const {
    checkName(mFile, kConfigurationFile);
    std::error_code ignored;
    if (std::filesystem::exists(mFile, ignored)) {
        checkReadable(mFile, kConfigurationFile);
        return true;
    }
    if (mMayCreate) return false;
    throw ToolError(kExitEnvironment, fmt::format("there is no configuration file {}; --create makes it from the "
                                                  "defaults",
                                                  mFile));
}

int SetCommand::run(Session& session) {
    if (mFile.empty()) {
        throw ToolError(kExitUsage,
                        "nothing outlives this command; --config FILE edits a configuration file, and --set NAME=VALUE "
                        "of another command, for example acquire, sets a parameter for that command, and 'quillon "
                        "shell' holds one grabber open for several steps");
    }
    if (mSettings.empty()) throw ToolError(kExitUsage, "there is nothing to set; write NAME=VALUE");
    const bool isThere = checkFile();
    host::Grabber& grabber = session.grabber();
    if (isThere) loadConfiguration(grabber, mFile);
    for (const std::string& setting : mSettings) applySetting(grabber, setting, session.port());
    saveConfiguration(grabber, mFile);
    print(grabber, session.port());
    return kExitOk;
}

void SetCommand::print(const host::Grabber& grabber, int port) const {
    const host::ParameterCatalogue catalogue(grabber, port);
    for (const std::string& setting : mSettings) {
        const host::ParameterInfo& parameter = parameterByName(catalogue, setting.substr(0, setting.find('=')));
        host::ParameterValue value;
        // An action, such as the loading of a LUT file, has no value.
        if (host::readValue(grabber, parameter, value, port) < 0) continue;
        fmt::print("{} = {}\n", parameter.name, withUnit(parameter, formatValue(parameter, value)));
    }
    fmt::print("saved {}\n", mFile);
}

}  // namespace

std::unique_ptr<Command> makeSetCommand(CLI::App& options) { return std::make_unique<SetCommand>(options); }

}  // namespace quillon::tool
