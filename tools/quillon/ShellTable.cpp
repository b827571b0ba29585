#include "ShellTable.h"

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>

#include "AppletFiles.h"
#include "ShellWords.h"
#include "SoftwareTriggers.h"
#include "Table.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

constexpr size_t kAny = std::numeric_limits<size_t>::max();
/// Between two looks at an acquisition that is waited for.
constexpr double kLookSeconds = 0.02;
constexpr double kLongestPause = 1e6;

/// \throws ToolError when the text is no number from \p least
double parseSeconds(const std::string& text, double least) {
    double value = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (problem != std::errc() || end != text.data() + text.size() || !(value >= least && value <= kLongestPause)) {
        throw ToolError(kExitUsage,
                        fmt::format("'{}' is no time in seconds from {} to {}", text, least, kLongestPause));
    }
    return value;
}

/// Reads the options of an acquisition as the command line does. \return nothing when help was asked for
std::optional<AcquireSettings> parseAcquisition(const char* name, std::vector<std::string> words) {
    CLI::App app("Acquires pictures with the settings of now.", name);
    AcquireSettings settings;
    addOptions(app, settings);
    if (!parseWords(app, std::move(words))) return std::nullopt;
    return settings;
}

}  // namespace

std::span<const ShellRow> Shell::rows() {
    using Kind = ShellWordKind;
    // clang-format off
    static constexpr std::array kRows{
        ShellRow{"get", "NAME...", "print values", Kind::Names, nullptr, 1, kAny, &makeGetCommand},
        ShellRow{"set", "NAME=VALUE...", "write values, in order; also while pictures are acquired", Kind::Assignments, &Shell::set, 1, kAny, nullptr},
        ShellRow{"list", "[PATTERN]", "list parameters", Kind::Names, nullptr, 0, kAny, &makeListCommand},
        ShellRow{"load", "FILE", "load a configuration file (.mcf)", Kind::Other, &Shell::load, 1, 1, nullptr},
        ShellRow{"save", "FILE", "save a configuration file (.mcf)", Kind::Other, nullptr, 1, kAny, &makeSaveCommand},
        ShellRow{"registers", "[PATTERN]", "show the registers of the design", Kind::Other, nullptr, 0, kAny, &makeRegistersCommand},
        ShellRow{"acquire", "[OPTIONS]", "acquire pictures and wait for them; options as of 'quillon acquire'", Kind::Other, &Shell::acquire, 0, kAny, nullptr},
        ShellRow{"start", "[OPTIONS]", "acquire pictures in the background, until 'stop' without -n", Kind::Other, &Shell::start, 0, kAny, nullptr},
        ShellRow{"status", "", "say how far the acquisition is", Kind::Other, &Shell::status, 0, 0, nullptr},
        ShellRow{"wait", "", "wait for the acquisition and print its report", Kind::Other, &Shell::wait, 0, 0, nullptr},
        ShellRow{"stop", "", "stop the acquisition and print its report", Kind::Other, &Shell::stop, 0, 0, nullptr},
        ShellRow{"trigger", "[N[@HZ]]", "send software triggers", Kind::Other, &Shell::trigger, 0, 1, nullptr},
        ShellRow{"watch", "NAME [TIMES [SECONDS]]", "print a value again and again, until Ctrl-C without TIMES", Kind::Names, &Shell::watch, 1, 3, nullptr},
        ShellRow{"sleep", "SECONDS", "wait", Kind::Other, &Shell::sleep, 1, 1, nullptr},
        ShellRow{"help", "", "list the commands", Kind::Other, &Shell::printHelp, 0, 0, nullptr},
        ShellRow{"quit", "", "leave the shell; a running acquisition is stopped", Kind::Other, &Shell::quit, 0, 0, nullptr},
    };
    // clang-format on
    return kRows;
}

void Shell::printHelp(const Words&) {
    Table table;
    for (const ShellRow& row : rows()) table.add({fmt::format("{} {}", row.name, row.arguments), row.summary});
    fmt::print("{}", table.text());
}

void Shell::set(const Words& words) {
    for (const std::string& setting : words) {
        applySetting(mSession.grabber(), setting);
        printValue(setting.substr(0, setting.find('=')));
    }
}

void Shell::load(const Words& words) {
    checkReadable(words.front(), kConfigurationFile);
    loadConfiguration(mSession.grabber(), words.front());
}

void Shell::begin(const char* name, const Words& words, frameindex_t count) {
    if (mAcquisition && mAcquisition->isRunning()) {
        throw ToolError(kExitUsage, "an acquisition is running; 'stop' ends it");
    }
    if (mAcquisition) finishAcquisition();
    std::optional<AcquireSettings> settings = parseAcquisition(name, words);
    if (!settings) return;
    if (!settings->count) settings->count = count;
    mAcquisition = std::make_unique<BackgroundAcquisition>(mSession.grabber(), *settings);
}

void Shell::start(const Words& words) { begin("start", words, 0); }

void Shell::acquire(const Words& words) {
    begin("acquire", words, 1);
    if (!mAcquisition) return;
    // Ctrl-C ends the acquisition; a second one is needed to give up what still waits for the disk.
    if (!waitForAcquisition()) listenForInterrupt();
    finishAcquisition();
}

void Shell::status(const Words&) {
    if (!mAcquisition) {
        fmt::print("no acquisition\n");
        return;
    }
    fmt::print("{}: {}\n", mAcquisition->isRunning() ? "acquiring" : "ended, 'stop' prints the report",
               mAcquisition->progressText());
}

void Shell::wait(const Words&) {
    if (!mAcquisition) throw ToolError(kExitUsage, "no acquisition runs; 'start' begins one");
    if (waitForAcquisition()) finishAcquisition();
}

void Shell::stop(const Words&) {
    if (!mAcquisition) throw ToolError(kExitUsage, "no acquisition runs; 'start' begins one");
    finishAcquisition();
}

bool Shell::waitForAcquisition() {
    while (mAcquisition->isRunning()) {
        if (!pause(kLookSeconds)) return false;
    }
    return true;
}

void Shell::finishAcquisition() {
    const std::unique_ptr<BackgroundAcquisition> ended = std::move(mAcquisition);
    ended->stop(mInterrupt.get_token());
    fmt::print("{}", ended->report());
    ended->throwUnlessWell();
}

void Shell::trigger(const Words& words) {
    const TriggerSeries series = words.empty() ? TriggerSeries{} : parseTriggerSeries(words.front());
    checkTriggerMode(mSession.grabber());
    const TriggerReport report = sendSoftwareTriggers(mSession.grabber(), series, mInterrupt.get_token());
    throwUnlessSent(report, series);
    fmt::print("{}\n", describe(report, series));
}

void Shell::watch(const Words& words) {
    const double times = words.size() < 2 ? 0 : parseSeconds(words[1], 0);
    const double seconds = words.size() < 3 ? 1 : parseSeconds(words[2], 0.01);
    for (double count = 1;; ++count) {
        printValue(words.front());
        std::fflush(stdout);
        if ((times >= 1 && count >= times) || !pause(seconds)) return;
    }
}

void Shell::sleep(const Words& words) { std::ignore = pause(parseSeconds(words.front(), 0)); }

void Shell::quit(const Words&) { mIsQuitting = true; }

bool Shell::pause(double seconds) {
    std::mutex lock;
    std::condition_variable_any never;
    std::unique_lock locked(lock);
    never.wait_for(locked, mInterrupt.get_token(), std::chrono::duration<double>(seconds), [] { return false; });
    return !mInterrupt.stop_requested();
}

}  // namespace quillon::tool
