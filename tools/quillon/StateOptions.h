#pragma once

#include <string>
#include <vector>

#include "host/Grabber.h"

namespace CLI {
class App;
}

namespace quillon::tool {

/// The options --config and --set of a command: the state in which it finds the grabber. It must stay where it is
/// until the command line has been read.
class StateOptions {
public:
    explicit StateOptions(CLI::App& options);
    StateOptions(const StateOptions&) = delete;
    StateOptions& operator=(const StateOptions&) = delete;

    /// Finds out what is wrong with the files before a board is opened.
    /// \throws ToolError when a file cannot be read
    void check() const;
    /// Loads the configuration file, if one was given.
    /// \throws ToolError when it is refused
    void load(host::Grabber& grabber) const;
    /// Writes the settings to a port in the order of the command line.
    /// \throws ToolError at the first that is refused
    void set(host::Grabber& grabber, int port = 0) const;
    /// Both of these.
    void apply(host::Grabber& grabber, int port = 0) const;

private:
    std::string mConfig;
    std::vector<std::string> mSettings;
};

}  // namespace quillon::tool
