#include "ProgressLine.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillon::tool {

namespace {

constexpr std::chrono::milliseconds kStep{100};
constexpr int kBarWidth = 24;
constexpr int kUsualColumns = 80;
/// Back to the begin of the line, and the rest of it erased.
constexpr const char* kErase = "\r\x1b[K";

int columnsOf(int terminal) {
    winsize size{};
    return ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualColumns;
}

std::string barText(uint64_t taken, uint64_t wanted) {
    const auto filled = static_cast<size_t>(kBarWidth * std::min(taken, wanted) / wanted);
    return fmt::format("[{}{}] ", std::string(filled, '#'), std::string(kBarWidth - filled, '.'));
}

std::string durationText(double seconds) {
    const auto whole = std::llround(seconds);
    if (whole < 60) return fmt::format("{} s", whole);
    if (whole < 3600) return fmt::format("{}:{:02} min", whole / 60, whole % 60);
    return fmt::format("{}:{:02} h", whole / 3600, whole / 60 % 60);
}

}  // namespace

std::string progressText(const ProgressState& state, int columns) {
    std::string text = state.wanted == 0
                           ? fmt::format("{}", state.taken)
                           : fmt::format("{}{}/{}", barText(state.taken, state.wanted), state.taken, state.wanted);
    const double rate = state.taken > 1 && state.seconds > 0 ? static_cast<double>(state.taken - 1) / state.seconds : 0;
    if (rate > 0) text += fmt::format("  {:.1f}/s  {:.1f} MB/s", rate, rate * state.pictureBytes / 1e6);
    text += fmt::format("  lost {}", state.lost);
    const uint64_t done = state.taken + state.lost;
    if (rate > 0 && state.wanted > done) {
        // Lost pictures count as well: the board goes on with the next one.
        const double allRate = rate * static_cast<double>(done) / static_cast<double>(state.taken);
        text += fmt::format("  {} left", durationText(static_cast<double>(state.wanted - done) / allRate));
    }
    return text.substr(0, static_cast<size_t>(std::max(columns - 1, 0)));
}

ProgressLine::ProgressLine(const AcquisitionRun& run) : mRun(run) {
    if (isatty(STDERR_FILENO) == 1) mThread = std::jthread([this](const std::stop_token& stop) { show(stop); });
}

ProgressLine::~ProgressLine() {
    if (!mThread.joinable()) return;
    mThread.request_stop();
    mThread.join();
    std::fputs(kErase, stderr);
}

void ProgressLine::show(const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point first{};
    const frameindex_t wanted = mRun.settings().pictures();
    std::unique_lock lock(mLock);
    while (!stop.stop_requested()) {
        ProgressState state;
        state.taken = mRun.progress().taken;
        state.lost = mRun.progress().lost;
        state.wanted = wanted == kEndless ? 0 : static_cast<uint64_t>(wanted);
        state.pictureBytes = static_cast<double>(mRun.window().bytes());
        const Clock::time_point now = Clock::now();
        if (state.taken == 0) first = now;
        state.seconds = std::chrono::duration<double>(now - first).count();
        std::fputs((kErase + progressText(state, columnsOf(STDERR_FILENO))).c_str(), stderr);
        std::fflush(stderr);
        mNever.wait_for(lock, stop, kStep, [] { return false; });
    }
}

}  // namespace quillon::tool
