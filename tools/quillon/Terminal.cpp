#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace quillon::tool {

namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

size_t terminalWidth() {
    const std::string_view columns = environment("COLUMNS");
    size_t width = 0;
    const auto [end, problem] = std::from_chars(columns.data(), columns.data() + columns.size(), width);
    if (!columns.empty() && problem == std::errc() && end == columns.data() + columns.size()) return width;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace

OutputStyle outputStyle() {
    if (isatty(STDOUT_FILENO) == 0) return {};
    const bool isDumb = environment("TERM").empty() || environment("TERM") == "dumb";
    return {environment("NO_COLOR").empty() && !isDumb, terminalWidth()};
}

}  // namespace quillon::tool
