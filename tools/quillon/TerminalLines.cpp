#include <readline/history.h>
#include <readline/readline.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "LineSource.h"

namespace quillon::tool {

namespace {

constexpr const char* kPrompt = "quillon> ";
/// What ends a word: blanks, and the sign between a name and its value.
constexpr const char* kWordEnds = " \t=";

/// The terminal. The library that edits the line knows one line and calls plain functions, so this is one, too.
class TerminalLines : public LineSource {
public:
    explicit TerminalLines(Completer completer) : mCompleter(std::move(completer)) {
        instance = this;
        rl_readline_name = "quillon";
        rl_catch_signals = 0;
        rl_completer_word_break_characters = kWordEnds;
        rl_attempted_completion_function = &complete;
        using_history();
    }
    ~TerminalLines() override { instance = nullptr; }

    std::optional<std::string> next() override {
        mIsReady = false;
        rl_callback_handler_install(kPrompt, &take);
        while (!mIsReady) {
            if (mWakeUp.waitFor(STDIN_FILENO)) {
                rl_callback_read_char();
            } else {
                rl_callback_handler_remove();
                std::fputs("^C\n", stdout);
                mIsReady = true;
                mLine = "";
            }
        }
        std::fflush(stdout);
        return std::exchange(mLine, std::nullopt);
    }

    void interrupt() override { mWakeUp.call(); }
    [[nodiscard]] bool isInteractive() const override { return true; }
    [[nodiscard]] std::string place() const override { return ""; }

private:
    /// Takes a finished line; none at the end of the input.
    static void take(char* line) {
        // Before this returns: otherwise the next prompt would be shown at once.
        rl_callback_handler_remove();
        instance->mIsReady = true;
        if (line == nullptr) {
            std::fputs("\n", stdout);
            return;
        }
        instance->mLine = line;
        if (*line != '\0') add_history(line);
        std::free(line);
    }

    static char** complete(const char* text, int start, int) {
        // Never the names of files in the current folder instead, except where nothing else is known.
        const std::string before(rl_line_buffer, static_cast<size_t>(start));
        instance->mProposals = instance->mCompleter(before, text);
        if (instance->mProposals.empty()) return nullptr;
        rl_attempted_completion_over = 1;
        if (instance->mProposals.front().ends_with('=')) rl_completion_append_character = '\0';
        return rl_completion_matches(text, &proposal);
    }

    /// \param state 0 at the first call of a row
    /// \return the next proposal in memory that the caller frees, or null
    static char* proposal(const char*, int state) {
        const auto index = state == 0 ? size_t{0} : instance->mNext;
        instance->mNext = index + 1;
        return index < instance->mProposals.size() ? strdup(instance->mProposals[index].c_str()) : nullptr;
    }

    inline static TerminalLines* instance = nullptr;

    Completer mCompleter;
    WakeUp mWakeUp;
    bool mIsReady = false;
    std::optional<std::string> mLine;
    std::vector<std::string> mProposals;
    size_t mNext = 0;
};

}  // namespace

std::unique_ptr<LineSource> openTerminal(Completer completer) {
    return std::make_unique<TerminalLines>(std::move(completer));
}

}  // namespace quillon::tool
