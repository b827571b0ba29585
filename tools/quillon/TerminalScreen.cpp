#include "TerminalScreen.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "ToolError.h"

namespace quillon::tool {

namespace {

constexpr const char* kEnter = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr const char* kLeave = "\x1b[0m\x1b[?25h\x1b[?1049l";
constexpr const char* kHome = "\x1b[H";
/// Ends a line of the screen: colours back to normal, what an earlier screen left there erased.
constexpr const char* kLineEnd = "\x1b[0m\x1b[K";
constexpr const char* kEraseBelow = "\x1b[J";

}  // namespace

TerminalScreen::TerminalScreen() {
    if (isatty(STDIN_FILENO) != 1 || isatty(STDOUT_FILENO) != 1 || tcgetattr(STDIN_FILENO, &mFormer) != 0) {
        throw ToolError(
            kExitUsage,
            "a live picture needs a terminal for its output and its keys; 'quillon acquire' saves pictures");
    }
    termios keys = mFormer;
    keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    // A suspended program would leave its screen behind; Ctrl-C stays a signal.
    keys.c_cc[VSUSP] = _POSIX_VDISABLE;
    keys.c_cc[VMIN] = 0;
    keys.c_cc[VTIME] = 0;
    tcsetattr(STDIN_FILENO, TCSANOW, &keys);
    writeAll(kEnter);
}

TerminalScreen::~TerminalScreen() {
    writeAll(kLeave);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &mFormer);
}

TerminalScreen::Size TerminalScreen::size() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
    return {size.ws_col, size.ws_row};
}

bool TerminalScreen::hasTrueColour() {
    const char* colours = std::getenv("COLORTERM");
    const std::string_view name = colours == nullptr ? "" : colours;
    return name == "truecolor" || name == "24bit";
}

bool TerminalScreen::show(const std::string& lines) {
    std::string screen = kHome;
    for (const char letter : lines) {
        if (letter == '\n') screen += kLineEnd;
        screen += letter;
    }
    return writeAll(screen + kLineEnd + kEraseBelow);
}

std::optional<char> TerminalScreen::key(int milliseconds) {
    pollfd keyboard{STDIN_FILENO, POLLIN, 0};
    if (poll(&keyboard, 1, milliseconds) <= 0) return std::nullopt;
    char letter = 0;
    if (read(STDIN_FILENO, &letter, 1) == 1) return letter;
    // A terminal that is gone would answer at once, again and again.
    return 'q';
}

bool TerminalScreen::writeAll(const std::string& text) {
    for (size_t done = 0; done < text.size();) {
        const ssize_t count = write(STDOUT_FILENO, text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) done += static_cast<size_t>(count);
    }
    return true;
}

}  // namespace quillon::tool
