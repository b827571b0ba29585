#include "SettingsOption.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "Session.h"

namespace quillon::tool {

SettingsOption::SettingsOption(CLI::App& options) {
    options.add_option("--set", mSettings, "set a parameter before the start; may be repeated, in order")
        ->type_name("NAME=VALUE");
}

void SettingsOption::apply(host::Grabber& grabber) const {
    for (const std::string& setting : mSettings) applySetting(grabber, setting);
}

}  // namespace quillon::tool
