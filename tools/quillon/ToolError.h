#pragma once

#include <stdexcept>
#include <string>

namespace quillon::tool {

/// What the process answers when it ends. A process that a signal stops answers 128 and the signal's number.
enum ExitCode : int {
    kExitOk = 0,
    kExitRefused = 1,     ///< the applet refused a value or an operation
    kExitUsage = 2,       ///< unknown command, option or parameter; text that is no value
    kExitEnvironment = 3  ///< files, memory, libraries, the board or the camera
};

/// Ends a command with a message for the person at the keyboard.
class ToolError : public std::runtime_error {
public:
    ToolError(ExitCode exitCode, const std::string& text) : std::runtime_error(text), mExitCode(exitCode) {}

    [[nodiscard]] ExitCode exitCode() const noexcept { return mExitCode; }

private:
    ExitCode mExitCode;
};

}  // namespace quillon::tool
