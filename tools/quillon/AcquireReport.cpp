#include "AcquireReport.h"

#include <fmt/format.h>

#include <array>
#include <nlohmann/json.hpp>

#include "Memory.h"
#include "SilenceReason.h"
#include "Table.h"
#include "ToolError.h"
#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

/// One kind of loss with its sentence.
struct LossRow {
    uint64_t RecordingReport::*count;
    const char* sentence;
};
constexpr std::array kLosses{
    LossRow{&RecordingReport::slowDisk,
            "could not be saved in time, the disk was slow: use a faster disk, a smaller window or more --buffers"     },
    LossRow{&RecordingReport::overwritten,
            "were overwritten before the tool took them, the machine was busy: use more --buffers"                     },
    LossRow{&RecordingReport::dropped,
            "were dropped before they reached a buffer: check cables, lower the camera's rate or use more --buffers"   },
    LossRow{&RecordingReport::incomplete,  "arrived incomplete and were not saved: set the window to the camera's size"},
    LossRow{&RecordingReport::timeOuts,    "time-out: the picture did not come within the time of --timeout"           },
    LossRow{&RecordingReport::stops,       "stop: ended before all pictures were there"                                },
};

/// \return pictures taken per second by the machine's clock, 0 when there are too few
double takenPerSecond(const RecordingReport& report) {
    const uint64_t taken = report.pictures + report.incomplete;
    // The first picture starts the clock, so one interval less than pictures.
    return taken > 1 && report.seconds > 0 ? static_cast<double>(taken - 1) / report.seconds : 0;
}

std::string rateText(const RecordingReport& report) {
    if (!report.intervals.isKnown()) return "- (takes two pictures with time stamps)";
    return fmt::format("{:.1f} pictures/s by time stamps; interval {:.3f} ms, jitter {:.3f} ms, at most {:.3f} ms off",
                       report.intervals.rate(), report.intervals.meanMs(), report.intervals.jitterMs(),
                       report.intervals.worstMs());
}

std::string plainText(const AcquisitionRun& run, const RecordingReport& report) {
    const PictureWindow& window = run.window();
    const auto bytes = static_cast<double>(window.bytes());
    const frameindex_t wanted = run.settings().pictures();
    const double perSecond = takenPerSecond(report);
    Table table;
    table.add({"pictures", wanted == kEndless ? fmt::format("{}", report.pictures)
                                              : fmt::format("{} of {}", report.pictures, wanted)});
    table.add({"size", fmt::format("{} x {} pixels, {}", window.width, window.height, formatBytes(bytes))});
    table.add({"rate", rateText(report)});
    table.add({"throughput",
               perSecond > 0 ? fmt::format("{:.1f} MB/s, {:.1f} pictures/s taken", perSecond * bytes / 1e6, perSecond)
                             : "- (takes two pictures)"});
    table.add({"lost", fmt::format("{}", report.lost())});
    for (const LossRow& row : kLosses) {
        if (report.*row.count != 0) table.add({fmt::format("  {} {}", report.*row.count, row.sentence)});
    }
    if (!run.settings().output.empty() && report.pictures != 0) table.add({"saved to", run.settings().output});
    return table.text();
}

std::string jsonText(const AcquisitionRun& run, const RecordingReport& report, const TriggerReport* triggers) {
    const PictureWindow& window = run.window();
    const double perSecond = takenPerSecond(report);
    nlohmann::ordered_json json{
        {"pictures",       report.pictures                                },
        {"width",          window.width                                   },
        {"height",         window.height                                  },
        {"lost",           report.lost()                                  },
        {"slowDisk",       report.slowDisk                                },
        {"overwritten",    report.overwritten                             },
        {"dropped",        report.dropped                                 },
        {"incomplete",     report.incomplete                              },
        {"timeOuts",       report.timeOuts                                },
        {"stops",          report.stops                                   },
        {"seconds",        report.seconds                                 },
        {"bytesPerSecond", perSecond * static_cast<double>(window.bytes())},
    };
    if (run.settings().pictures() != kEndless) json["wanted"] = run.settings().pictures();
    if (report.intervals.isKnown()) {
        json["rate"] = report.intervals.rate();
        json["intervalMs"] = report.intervals.meanMs();
        json["jitterMs"] = report.intervals.jitterMs();
        json["worstDeviationMs"] = report.intervals.worstMs();
    }
    if (triggers != nullptr) {
        json["triggersSent"] = triggers->sent;
        json["triggersRepeated"] = triggers->refusals;
    }
    if (!run.settings().output.empty()) json["output"] = run.settings().output;
    return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string reportText(const AcquisitionRun& run, const RecordingReport& report, const TriggerReport* triggers) {
    return run.settings().isJson ? jsonText(run, report, triggers) : plainText(run, report);
}

void throwUnlessWell(const host::Grabber& grabber, const AcquisitionRun& run, const RecordingReport& report) {
    switch (report.end) {
        case RecordingEnd::Complete:
        case RecordingEnd::Stopped:
            return;
        case RecordingEnd::TimedOut:
            throw ToolError(kExitEnvironment,
                            fmt::format("time-out: picture {} did not arrive within {} s\n  {}", report.waitedFor,
                                        run.settings().timeout, explainSilence(grabber)));
        case RecordingEnd::FileFailed:
            throw ToolError(kExitEnvironment, report.problem);
        case RecordingEnd::StopFailed:
            throw host::HostError(report.code,
                                  "the acquisition did not stop: " + host::describeResultCode(report.code));
        case RecordingEnd::BoardFailed:
            break;
    }
    throw host::HostError(report.code, fmt::format("the wait for picture {} ended: {}", report.waitedFor,
                                                   host::describeResultCode(report.code)));
}

}  // namespace quillon::tool
