#pragma once

#include <limits>
#include <optional>
#include <string>

#include "fabrix/types.h"

namespace CLI {
class App;
}

namespace quillon::tool {

constexpr frameindex_t kEndless = std::numeric_limits<frameindex_t>::max();

/// What an acquisition is to bring, as the options of a command say it.
struct AcquireSettings {
    std::optional<frameindex_t> count;  ///< 0 goes on until it is stopped
    std::string output;
    std::string histogram;
    frameindex_t buffers = 0;  ///< 0: as many as are useful
    int timeout = 5;           ///< seconds
    bool isCompressed = false;
    bool isJson = false;

    /// \return pictures to acquire, kEndless without an end
    [[nodiscard]] frameindex_t pictures() const { return count.value_or(1) == 0 ? kEndless : count.value_or(1); }
};

/// Adds the options; \p settings must stay where they are until the command line has been read.
void addOptions(CLI::App& options, AcquireSettings& settings);

/// \throws ToolError for settings that contradict each other
void checkSettings(const AcquireSettings& settings);

}  // namespace quillon::tool
