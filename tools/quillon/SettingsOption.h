#pragma once

#include <string>
#include <vector>

#include "host/Grabber.h"

namespace CLI {
class App;
}

namespace quillon::tool {

/// The option --set of a command. It must stay where it is until the command line has been read.
class SettingsOption {
public:
    explicit SettingsOption(CLI::App& options);
    SettingsOption(const SettingsOption&) = delete;
    SettingsOption& operator=(const SettingsOption&) = delete;

    /// Writes the settings in the order of the command line.
    /// \throws ToolError at the first that is refused
    void apply(host::Grabber& grabber) const;

private:
    std::vector<std::string> mSettings;
};

}  // namespace quillon::tool
