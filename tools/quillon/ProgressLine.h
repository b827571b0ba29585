#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "AcquisitionRun.h"

namespace quillon::tool {

/// How far an acquisition is.
struct ProgressState {
    uint64_t taken = 0;
    uint64_t wanted = 0;  ///< 0: without an end
    uint64_t lost = 0;
    double seconds = 0;       ///< since the first picture
    double pictureBytes = 0;  ///< of one picture
};

/// \param columns width of the terminal
/// \return a line of at most \p columns characters: bar, pictures, rate, MB/s, lost, time left
std::string progressText(const ProgressState& state, int columns);

/// Shows how far an acquisition is, in the last line of a terminal on standard error, until it is destroyed. Shows
/// nothing where standard error is no terminal.
class ProgressLine {
public:
    /// \param run borrowed
    explicit ProgressLine(const AcquisitionRun& run);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

private:
    void show(const std::stop_token& stop);

    const AcquisitionRun& mRun;
    std::mutex mLock;
    std::condition_variable_any mNever;
    std::jthread mThread;
};

}  // namespace quillon::tool
