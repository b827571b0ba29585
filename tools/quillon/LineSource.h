#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon::tool {

/// Where the lines of a shell come from.
class LineSource {
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    virtual ~LineSource() = default;

    /// Waits for a line. \return it without its line feed, or nothing at the end and after interrupt()
    virtual std::optional<std::string> next() = 0;
    /// Ends the wait, from another thread: an empty line in a terminal, the end elsewhere.
    virtual void interrupt() = 0;
    /// \return whether a person types the lines
    [[nodiscard]] virtual bool isInteractive() const = 0;
    /// \return name and number of the line, for messages: "script.txt:12"; empty in a terminal
    [[nodiscard]] virtual std::string place() const = 0;
};

/// A wake-up call from one thread to another that waits in poll().
class WakeUp {
public:
    WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;
    ~WakeUp();

    void call() const;
    /// Waits until \p descriptor can be read. \return false after a call, which is used up then
    [[nodiscard]] bool waitFor(int descriptor) const;

private:
    int mEvent;
};

/// Proposes what may stand in place of a word. \param before the line up to the word
using Completer = std::function<std::vector<std::string>(const std::string& before, const std::string& word)>;

/// Lines of a file. \throws ToolError when it cannot be read
std::unique_ptr<LineSource> openScript(const std::string& path);
/// Lines of standard input, which is no terminal.
std::unique_ptr<LineSource> openPipe();
/// Lines typed at the terminal, with history and completion. One of it at a time.
std::unique_ptr<LineSource> openTerminal(Completer completer);

}  // namespace quillon::tool
