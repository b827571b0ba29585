#pragma once

#include <termios.h>

#include <optional>
#include <string>

namespace quillon::tool {

/// A terminal taken over for a live display: a screen of its own without a cursor, and keys that come one by one. The
/// terminal is as it was when this is destroyed. One of it at a time, on standard input and standard output.
class TerminalScreen {
public:
    /// \throws ToolError when standard input or output is no terminal
    TerminalScreen();
    TerminalScreen(const TerminalScreen&) = delete;
    TerminalScreen& operator=(const TerminalScreen&) = delete;
    ~TerminalScreen();

    struct Size {
        int columns = 80;
        int rows = 24;
    };
    /// \return the size now
    [[nodiscard]] static Size size();
    /// \return whether the terminal says that it shows 24-bit colours
    [[nodiscard]] static bool hasTrueColour();

    /// Shows a whole screen; its lines are separated by line feeds.
    /// \return false when the terminal is gone
    bool show(const std::string& lines);

    /// Waits for a key. \return it, or nothing after \p milliseconds
    [[nodiscard]] std::optional<char> key(int milliseconds);

private:
    static bool writeAll(const std::string& text);

    termios mFormer{};
};

}  // namespace quillon::tool
