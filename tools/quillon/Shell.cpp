#include "Shell.h"

#include <fmt/format.h>
#include <strings.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <tuple>
#include <utility>

#include "Command.h"
#include "ShellTable.h"
#include "ShellWords.h"
#include "ToolError.h"
#include "ValueText.h"

namespace quillon::tool {

namespace {

constexpr int kSignalExitBase = 128;

bool startsWith(const std::string& text, const std::string& begin) {
    return strncasecmp(text.c_str(), begin.c_str(), begin.size()) == 0;
}

}  // namespace

const ShellRow& Shell::rowOf(const std::string& name) {
    for (const ShellRow& row : rows()) {
        if (name == row.name) return row;
    }
    throw ToolError(kExitUsage, fmt::format("there is no command '{}'; 'help' lists them", name));
}

int Shell::run(LineSource& lines, bool keepsGoing) {
    int exitCode = kExitOk;
    while (!mIsQuitting && !mustEnd(lines)) {
        const std::optional<std::string> line = nextLine(lines);
        if (!line) break;
        if (runLine(*line, lines.place()) || lines.isInteractive() || stoppedBy() != 0) continue;
        exitCode = kExitRefused;
        if (!keepsGoing) break;
    }
    const int signal = stoppedBy();
    if (mAcquisition && !runLine("stop", lines.place()) && !lines.isInteractive()) exitCode = kExitRefused;
    return signal == 0 ? exitCode : kSignalExitBase + signal;
}

int Shell::stoppedBy() {
    if (mSignals.received() != 0) mStoppedBy = mSignals.received();
    mSignals.forget(mStoppedBy);
    return mStoppedBy;
}

bool Shell::mustEnd(const LineSource& lines) {
    // At a terminal Ctrl-C ends a command or a line, nothing more.
    if (stoppedBy() == SIGINT && lines.isInteractive()) mStoppedBy = 0;
    return mStoppedBy != 0;
}

void Shell::listenForInterrupt() {
    mSignals.setAction(nullptr);
    std::ignore = stoppedBy();
    mInterrupt = std::stop_source();
    mSignals.setAction([this] { mInterrupt.request_stop(); });
}

std::optional<std::string> Shell::nextLine(LineSource& lines) {
    mSignals.setAction([&] { lines.interrupt(); });
    std::optional<std::string> line = lines.next();
    mSignals.setAction(nullptr);
    return line;
}

bool Shell::runLine(const std::string& line, const std::string& place) {
    listenForInterrupt();
    std::string problem;
    try {
        runWords(splitWords(line));
    } catch (const host::HostError& error) {
        problem = mSession.explain(error);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    mSignals.setAction(nullptr);
    std::fflush(stdout);
    if (problem.empty()) return true;
    fmt::print(stderr, "quillon: {}{}{}\n", place, place.empty() ? "" : ": ", problem);
    return false;
}

void Shell::runWords(const Words& words) {
    if (words.empty()) return;
    const ShellRow& row = rowOf(words.front());
    Words rest(words.begin() + 1, words.end());
    if (row.make != nullptr) {
        runCommand(row, std::move(rest));
        return;
    }
    if (rest.size() < row.fewestWords || rest.size() > row.mostWords) {
        throw ToolError(kExitUsage, fmt::format("write: {} {}", row.name, row.arguments));
    }
    (this->*row.run)(rest);
}

void Shell::runCommand(const ShellRow& row, Words words) {
    CLI::App app(row.summary, row.name);
    const std::unique_ptr<Command> command = row.make(app);
    if (!parseWords(app, std::move(words))) return;
    const int code = command->run(mSession);
    if (code != kExitOk) throw ToolError(static_cast<ExitCode>(code), fmt::format("{} did not succeed", row.name));
}

void Shell::printValue(const std::string& name) {
    const host::Grabber& grabber = mSession.grabber();
    const host::ParameterCatalogue catalogue(grabber);
    const host::ParameterInfo& parameter = parameterByName(catalogue, name);
    host::ParameterValue value;
    // An action, such as the loading of a LUT file, has no value.
    if (host::readValue(grabber, parameter, value) < 0) return;
    fmt::print("{} = {}{}{}\n", parameter.name, formatValue(parameter, value), parameter.unit.empty() ? "" : " ",
               parameter.unit);
}

std::vector<std::string> Shell::complete(const std::string& before, const std::string& word) {
    const size_t begin = before.find_first_not_of(" \t");
    std::vector<std::string> proposals;
    if (begin == std::string::npos) {
        for (const ShellRow& row : rows()) {
            if (startsWith(row.name, word)) proposals.emplace_back(row.name);
        }
        return proposals;
    }
    const std::string name = before.substr(begin, before.find_first_of(" \t", begin) - begin);
    const auto row = std::find_if(rows().begin(), rows().end(), [&](const ShellRow& r) { return name == r.name; });
    if (row == rows().end() || (row->words != ShellWordKind::Names && row->words != ShellWordKind::Assignments)) {
        return proposals;
    }
    const host::ParameterCatalogue catalogue(mSession.grabber());
    if (before.ends_with('=')) {
        const size_t start = before.find_last_of(" \t") + 1;
        const host::ParameterInfo* parameter = catalogue.find(before.substr(start, before.size() - 1 - start));
        if (parameter == nullptr) return proposals;
        for (const host::EnumerationEntry& entry : parameter->entries) {
            const std::string& text = entry.name.empty() ? entry.displayName : entry.name;
            if (startsWith(text, word)) proposals.push_back(text);
        }
        return proposals;
    }
    const char* ending = row->words == ShellWordKind::Assignments ? "=" : "";
    for (const host::ParameterInfo& parameter : catalogue.parameters()) {
        // Names are taken without their prefix as well.
        if (startsWith(parameter.name, word) || startsWith(parameter.name, "FG_" + word)) {
            proposals.push_back(parameter.name + ending);
        }
    }
    return proposals;
}

}  // namespace quillon::tool
