#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

namespace quillon::tool {

/// Takes Ctrl-C and a request to terminate as an order to stop, instead of dying at once. Make it before any other
/// thread starts: threads that start later leave these signals to it. One of it at a time.
class StopSignals {
public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    /// \return the signal that came, or 0
    [[nodiscard]] int received() const { return mReceived; }
    /// Forgets that \p signal came.
    void forget(int signal);

    /// Runs \p action in another thread when a signal comes, at once when one has come already. An empty action
    /// takes the former one back; it is not running any more when this returns.
    void setAction(std::function<void()> action);

private:
    void watch();

    sigset_t mSignals{};
    sigset_t mFormerMask{};
    std::atomic<int> mReceived{0};
    std::atomic<bool> mIsEnding{false};
    std::mutex mLock;
    std::function<void()> mAction;  ///< guarded by mLock
    std::thread mWatcher;
};

}  // namespace quillon::tool
