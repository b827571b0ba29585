#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

/// One planned fault: the \p call -th call of \p operation, counted from 1, answers \p code.
struct Fault {
    std::string operation;
    int call;
    int code;
};

/// Which calls fail, and how. Owned by whatever answers the calls; any thread may call it.
class FaultPlan {
public:
    /// Reads `OPERATION:N:CODE[,OPERATION:N:CODE...]`. An operation is one of \p operations, N is 1 or more, CODE is
    /// negative. On a refusal nothing is returned and \p why names the faulty entry.
    [[nodiscard]] static std::optional<std::vector<Fault>> parse(std::string_view text,
                                                                 std::span<const std::string_view> operations,
                                                                 std::string& why);

    /// Adds a fault; its calls are counted from now on.
    void add(const Fault& fault);

    /// Forgets all planned faults.
    void clear();

    /// Counts one call of \p operation. \return the planned code, or 0 where the call shall go on.
    [[nodiscard]] int nextCall(std::string_view operation);

private:
    struct Countdown {
        int callsLeft;
        int code;
    };

    std::mutex mMutex;
    std::multimap<std::string, Countdown, std::less<>> mPlanned;  // guarded by mMutex
    std::atomic<bool> mIsEmpty{true};                             // spares the usual call the lock
};

}  // namespace simulation
