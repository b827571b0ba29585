#include "tool/TerminalProcess.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace tooltest {

namespace {

/// Tenths of a second without a word until a program counts as stuck.
constexpr int kMostWaits = 200;

}  // namespace

TerminalProcess::TerminalProcess(const Arguments& arguments, const Environment& environment) {
    winsize size{24, 80, 0, 0};
    if (openpty(&mTerminal, &mProgramSide, nullptr, nullptr, &size) != 0) throw std::runtime_error("no terminal");
    std::vector<std::string> words{toolPath()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    mProcess = fork();
    if (mProcess < 0) throw std::runtime_error("no process");
    if (mProcess == 0) {
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        setenv("TERM", "xterm", 1);
        close(mTerminal);
        login_tty(mProgramSide);
        execv(pointers.front(), pointers.data());
        _exit(127);
    }
}

TerminalProcess::~TerminalProcess() {
    if (mProcess > 0) {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
    }
    close(mTerminal);
    close(mProgramSide);
}

void TerminalProcess::type(const std::string& keys) const {
    if (write(mTerminal, keys.data(), keys.size()) < 0) throw std::runtime_error("the terminal takes no keys");
}

bool TerminalProcess::readSome() {
    pollfd source{mTerminal, POLLIN, 0};
    std::array<char, 4096> chunk{};
    if (poll(&source, 1, 100) <= 0) return false;
    const ssize_t count = read(mTerminal, chunk.data(), chunk.size());
    if (count <= 0) return false;
    mShown.append(chunk.data(), static_cast<size_t>(count));
    return true;
}

bool TerminalProcess::waitFor(const std::string& text) {
    for (int silent = 0; silent < kMostWaits;) {
        const size_t at = mShown.find(text, mSeen);
        if (at != std::string::npos) {
            mSeen = at + text.size();
            return true;
        }
        if (!readSome()) ++silent;
    }
    return false;
}

int TerminalProcess::finish() {
    int status = 0;
    for (int silent = 0; waitpid(mProcess, &status, WNOHANG) == 0;) {
        if (!readSome() && ++silent == kMostWaits) kill(mProcess, SIGKILL);
    }
    mProcess = -1;
    while (readSome()) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool TerminalProcess::isRestored() const {
    termios settings{};
    constexpr tcflag_t kUsual = ICANON | ECHO | ISIG;
    return tcgetattr(mProgramSide, &settings) == 0 && (settings.c_lflag & kUsual) == kUsual;
}

}  // namespace tooltest
