#include "StateOptions.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "AppletFiles.h"
#include "Session.h"

namespace quillon::tool {

StateOptions::StateOptions(CLI::App& options) {
    options.add_option("--config", mConfig, "load a configuration file (.mcf) before all --set")->type_name("FILE");
    options
        .add_option("--set", mSettings,
                    "set a parameter before the start; may be repeated, in order, and comes after the command's own "
                    "arguments")
        ->type_name("NAME=VALUE");
}

void StateOptions::check() const {
    if (!mConfig.empty()) checkReadable(mConfig, kConfigurationFile);
}

void StateOptions::load(host::Grabber& grabber) const {
    if (!mConfig.empty()) loadConfiguration(grabber, mConfig);
}

void StateOptions::set(host::Grabber& grabber, int port) const {
    for (const std::string& setting : mSettings) applySetting(grabber, setting, port);
}

void StateOptions::apply(host::Grabber& grabber, int port) const {
    load(grabber);
    set(grabber, port);
}

}  // namespace quillon::tool
