#pragma once

#include <sys/types.h>

#include <string>

#include "tool/ToolRun.h"

namespace tooltest {

/// The staged tool at a terminal of 24 lines of 80 letters. Killed and reaped when the test forgets it.
class TerminalProcess {
public:
    TerminalProcess(const Arguments& arguments, const Environment& environment);
    TerminalProcess(const TerminalProcess&) = delete;
    TerminalProcess& operator=(const TerminalProcess&) = delete;
    ~TerminalProcess();

    void type(const std::string& keys) const;
    /// Reads until \p text has been shown since the last wait. \return whether it was, within some seconds
    bool waitFor(const std::string& text);
    /// Reads to the end; a program that is stuck is killed. \return the exit code
    int finish();
    /// \return all that was shown
    [[nodiscard]] const std::string& shown() const { return mShown; }
    /// \return whether keys are echoed and come in lines, as a shell expects it after a program
    [[nodiscard]] bool isRestored() const;

private:
    bool readSome();

    pid_t mProcess = -1;
    int mTerminal = -1;
    int mProgramSide = -1;  ///< open, so that the settings outlive the program
    std::string mShown;
    size_t mSeen = 0;
};

}  // namespace tooltest
