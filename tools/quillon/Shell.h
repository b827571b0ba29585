#pragma once

#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "BackgroundAcquisition.h"
#include "LineSource.h"
#include "Session.h"
#include "StopSignals.h"

namespace quillon::tool {

struct ShellRow;

/// Runs commands, line after line, on one grabber that stays open. Used by one thread.
class Shell {
public:
    Shell(Session& session, StopSignals& signals) : mSession(session), mSignals(signals) {}

    /// Runs all lines. Where no person types them, the first failure ends it.
    /// \param keepsGoing a failure is reported and the next line follows
    /// \return the exit code of the process
    int run(LineSource& lines, bool keepsGoing);

    /// \return what may stand in place of \p word
    [[nodiscard]] std::vector<std::string> complete(const std::string& before, const std::string& word);

private:
    using Words = std::vector<std::string>;

    static std::span<const ShellRow> rows();
    /// \throws ToolError when there is no such command
    static const ShellRow& rowOf(const std::string& name);

    // The commands. The words are those behind the command's name.
    void printHelp(const Words& words);
    void set(const Words& words);
    void load(const Words& words);
    void acquire(const Words& words);
    void start(const Words& words);
    void stop(const Words& words);
    void status(const Words& words);
    void wait(const Words& words);
    void trigger(const Words& words);
    void watch(const Words& words);
    void sleep(const Words& words);
    void quit(const Words& words);

    std::optional<std::string> nextLine(LineSource& lines);
    /// \return whether it succeeded; a failure has been reported
    bool runLine(const std::string& line, const std::string& place);
    void runWords(const Words& words);
    /// Runs a command of the tool.
    void runCommand(const ShellRow& row, Words words);
    /// \return the signal that is to end the shell, or 0
    int stoppedBy();
    bool mustEnd(const LineSource& lines);
    /// From now on Ctrl-C requests the end of what runs.
    void listenForInterrupt();
    /// Starts an acquisition of so many pictures unless the options say otherwise; none when they ask for help.
    void begin(const char* name, const Words& words, frameindex_t count);
    void printValue(const std::string& name);
    /// \return false when Ctrl-C ended it
    bool pause(double seconds);
    /// Ends the acquisition and prints its report. \throws what went wrong with it
    void finishAcquisition();
    /// \return false when Ctrl-C ended the wait
    bool waitForAcquisition();

    Session& mSession;
    StopSignals& mSignals;
    std::unique_ptr<BackgroundAcquisition> mAcquisition;
    std::stop_source mInterrupt;  ///< of the command that runs
    int mStoppedBy = 0;
    bool mIsQuitting = false;
};

}  // namespace quillon::tool
