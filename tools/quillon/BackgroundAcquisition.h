#pragma once

#include <atomic>
#include <exception>
#include <future>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include "AcquisitionRun.h"

namespace quillon::tool {

/// An acquisition in a thread of its own. The grabber is borrowed; meanwhile one other thread may use its parameters.
class BackgroundAcquisition {
public:
    /// Starts it; when this returns, the board acquires.
    /// \throws ToolError or host::HostError when it cannot be prepared or does not start
    BackgroundAcquisition(host::Grabber& grabber, const AcquireSettings& settings);
    BackgroundAcquisition(const BackgroundAcquisition&) = delete;
    BackgroundAcquisition& operator=(const BackgroundAcquisition&) = delete;
    /// Stops it, and writes no picture that still waits for the disk.
    ~BackgroundAcquisition();

    [[nodiscard]] bool isRunning() const { return !mIsDone; }
    /// \return for example "57 of 200 pictures, 0 lost"
    [[nodiscard]] std::string progressText() const;

    /// Stops it and waits for its files; a request of \p giveUp ends their writing.
    void stop(const std::stop_token& giveUp);
    /// \return how it went, empty when it did not start; only after stop()
    [[nodiscard]] std::string report() const;
    /// \throws what ended it, unless it is complete or was stopped, and what its histogram came to; only after stop()
    void throwUnlessWell() const;

private:
    void run();

    host::Grabber& mGrabber;
    AcquisitionRun mRun;
    std::stop_source mStop;
    std::stop_source mGiveUp;
    std::atomic<bool> mIsDone{false};
    std::optional<RecordingReport> mReport;  ///< written by the thread, read when it has ended
    std::exception_ptr mException;           ///< likewise
    std::promise<void> mStarted;
    std::thread mThread;
};

}  // namespace quillon::tool
