#include "SoftwareTriggers.h"

#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "PictureWindow.h"
#include "ToolError.h"
#include "fabrix/parameter_ids.h"
#include "fabrix/result_codes.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

constexpr int kSoftwareTrigger = 4;
constexpr int kSoftwareTriggerQueued = 7;
constexpr double kSlowest = 0.001;
constexpr double kFastest = 1'000'000;
/// Between two attempts at a board that is busy.
constexpr std::chrono::microseconds kRetry{100};
/// The write of a trigger failed; the applet answers so instead of with a negative code.
constexpr int kWriteFailed = 1;

/// Sleeps that a stop ends.
class Pause {
public:
    explicit Pause(const std::stop_token& stop) : mStop(stop) {}

    void until(std::chrono::steady_clock::time_point time) {
        std::unique_lock lock(mLock);
        mNever.wait_until(lock, mStop, time, [] { return false; });
    }

private:
    const std::stop_token& mStop;
    std::mutex mLock;
    std::condition_variable_any mNever;
};

template <class T>
bool parseWhole(std::string_view text, T& value) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    return problem == std::errc() && end == text.data() + text.size();
}

}  // namespace

TriggerSeries parseTriggerSeries(const std::string& text) {
    TriggerSeries series;
    const size_t at = text.find('@');
    const std::string_view all = text;
    const bool isCount = parseWhole(all.substr(0, at), series.count) && series.count >= 1 && series.count <= INT32_MAX;
    const bool isRate = at == std::string::npos || (parseWhole(all.substr(at + 1), series.hertz) &&
                                                    series.hertz >= kSlowest && series.hertz <= kFastest);
    if (isCount && isRate) return series;
    throw ToolError(kExitUsage, fmt::format("'{}' is no series of software triggers; write N or N@HZ, for example "
                                            "100@25, with a count from 1 and a rate of {} to {} Hz",
                                            text, kSlowest, kFastest));
}

void checkTriggerMode(const host::Grabber& grabber) {
    const int mode = readOr(grabber, FG_TRIGGERMODE, 0);
    if (mode == kSoftwareTrigger || mode == kSoftwareTriggerQueued) return;
    throw ToolError(kExitUsage, fmt::format("FG_TRIGGERMODE = {} takes no software triggers; set it to "
                                            "ASYNC_SOFTWARE_TRIGGER or ASYNC_SOFTWARE_TRIGGER_QUEUED",
                                            mode));
}

TriggerReport sendSoftwareTriggers(host::Grabber& grabber, const TriggerSeries& series, const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    TriggerReport report;
    Pause pause(stop);
    const Clock::time_point start = Clock::now();
    while (report.sent < series.count) {
        if (series.hertz > 0) {
            const std::chrono::duration<double> offset(report.sent / series.hertz);
            pause.until(start + std::chrono::duration_cast<Clock::duration>(offset));
        }
        if (stop.stop_requested()) break;
        const int code = grabber.write(FG_SENDSOFTWARETRIGGER, int32_t{1});
        if (code == FG_SOFTWARE_TRIGGER_BUSY) {
            ++report.refusals;
            pause.until(Clock::now() + kRetry);
        } else if (code < 0 || code == kWriteFailed) {
            report.code = code;
            break;
        } else {
            ++report.sent;  // also when it was queued behind others
        }
    }
    return report;
}

std::string describe(const TriggerReport& report, const TriggerSeries& series) {
    return fmt::format("sent {} of {} software triggers", report.sent, series.count);
}

void throwUnlessSent(const TriggerReport& report, const TriggerSeries& series) {
    if (report.code == 0) return;
    const std::string reason =
        report.code == kWriteFailed ? "the board refused the write" : host::describeResultCode(report.code);
    throw ToolError(kExitRefused,
                    fmt::format("{}; FG_SENDSOFTWARETRIGGER refused: {}", describe(report, series), reason));
}

}  // namespace quillon::tool
