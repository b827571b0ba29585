#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "Command.h"
#include "Memory.h"
#include "PictureFiles.h"
#include "PictureSource.h"
#include "Recording.h"
#include "Session.h"
#include "StateOptions.h"
#include "StopSignals.h"
#include "Table.h"
#include "ToolError.h"
#include "host/Acquisition.h"
#include "host/BufferSet.h"
#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::tool {

namespace {

constexpr frameindex_t kEndless = std::numeric_limits<frameindex_t>::max();
/// Memory that the buffers take at most when their number is not given.
constexpr uint64_t kDefaultBufferMemory = 256'000'000;
constexpr frameindex_t kFewestDefaultBuffers = 4;
constexpr int kGray8 = 3;
/// Values of FG_GEN_ENABLE.
constexpr int kCamera = 0;
constexpr int kGenerator = 1;
constexpr int kSignalExitBase = 128;

struct Window {
    uint32_t width = 0;
    uint32_t height = 0;

    [[nodiscard]] uint64_t bytes() const { return uint64_t{width} * height; }
};

uint32_t readPixels(const host::Grabber& grabber, int id, const char* name) {
    int32_t value = 0;
    const int code = grabber.read(id, value);
    if (code < 0 || value < 1) {
        throw ToolError(kExitRefused,
                        fmt::format("{} cannot be used: value {}, {}", name, value, host::describeResultCode(code)));
    }
    return static_cast<uint32_t>(value);
}

Window readWindow(const host::Grabber& grabber) {
    int32_t format = kGray8;
    // An applet without FG_FORMAT delivers 8-bit gray.
    if (grabber.read(FG_FORMAT, format) >= 0 && format != kGray8) {
        throw ToolError(kExitUsage,
                        fmt::format("FG_FORMAT = {} cannot be acquired by this tool; set FG_FORMAT=FG_GRAY", format));
    }
    return {readPixels(grabber, FG_WIDTH, "FG_WIDTH"), readPixels(grabber, FG_HEIGHT, "FG_HEIGHT")};
}

/// Refuses buffers that the machine cannot hold, before any of it is taken.
void checkMemory(const Window& window, frameindex_t buffers) {
    const uint64_t available = availableMemory();
    const uint64_t needed = window.bytes() * static_cast<uint64_t>(buffers);
    if (needed <= available && needed <= std::numeric_limits<size_t>::max()) return;
    throw ToolError(
        kExitEnvironment,
        fmt::format("the window of {} x {} pixels needs {} of memory ({} buffers of {}), and {} are "
                    "available; set a smaller FG_WIDTH or FG_HEIGHT, or fewer --buffers",
                    window.width, window.height, formatBytes(static_cast<double>(needed)), buffers,
                    formatBytes(static_cast<double>(window.bytes())), formatBytes(static_cast<double>(available))));
}

/// \return the parameter's value, or \p otherwise where the applet has none
int32_t readOr(const host::Grabber& grabber, int id, int32_t otherwise) {
    int32_t value = 0;
    return grabber.read(id, value) < 0 ? otherwise : value;
}

/// \return camera frames of which the board delivers one
uint32_t framesPerPicture(const host::Grabber& grabber) {
    return static_cast<uint32_t>(std::max(readOr(grabber, FG_IMG_SELECT_PERIOD, 1), 1));
}

/// Says what to look at when no picture comes, the surest reason first.
std::string reasonForSilence(const host::Grabber& grabber) {
    const int32_t selected = readOr(grabber, FG_IMG_SELECT, 0);
    const uint32_t period = framesPerPicture(grabber);
    if (selected >= 0 && static_cast<uint32_t>(selected) >= period) {
        return fmt::format("FG_IMG_SELECT = {} chooses no frame out of FG_IMG_SELECT_PERIOD = {}, counted from 0",
                           selected, period);
    }
    if (readOr(grabber, FG_GEN_ENABLE, kCamera) == kGenerator) {
        return "FG_GEN_ENABLE = FG_GENERATOR: check that FG_GEN_START is FG_ON and that FG_GEN_WIDTH and "
               "FG_GEN_HEIGHT make a picture";
    }
    if (readOr(grabber, FG_CAMSTATUS, 1) == 0) {
        return "FG_CAMSTATUS = 0: the camera link is closed, check the camera's power and cables";
    }
    return "check that the camera sends frames and, in a triggered mode, that pulses come, or wait longer with "
           "--timeout";
}

class AcquireCommand : public Command {
public:
    explicit AcquireCommand(CLI::App& options) : mSource(options), mState(options) {
        options.add_option("-n,--count", mCount, "pictures to acquire; 0 goes on until Ctrl-C")
            ->check(CLI::Range(0, kEndless))
            ->type_name("COUNT")
            ->capture_default_str();
        options
            .add_option("--output", mOutput,
                        "save the pictures; %d or %03d stands for the picture's number, and the ending, .png or "
                        ".pgm, for the format; the folder is created")
            ->type_name("PATTERN");
        options.add_option("--buffers", mBuffers, "buffers that the board fills in turn")
            ->check(CLI::Range(1, 1 << 20))
            ->type_name("COUNT");
        options.add_option("--timeout", mTimeout, "longest wait for a picture, in seconds")
            ->check(CLI::Range(1, 1'000'000))
            ->type_name("SECONDS")
            ->capture_default_str();
    }

    int run(Session& session) override;

private:
    void checkBuffers() const;
    void openOutput();
    [[nodiscard]] frameindex_t pictures() const { return mCount == 0 ? kEndless : mCount; }
    [[nodiscard]] frameindex_t bufferCount(const Window& window) const;
    RecordingReport acquire(host::Grabber& grabber, const Window& window, frameindex_t buffers, StopSignals& signals);
    void printStatistics(const Window& window, const RecordingReport& report) const;
    [[nodiscard]] int finish(const host::Grabber& grabber, const RecordingReport& report, int signal) const;

    PictureSource mSource;
    StateOptions mState;
    frameindex_t mCount = 1;
    std::string mOutput;
    frameindex_t mBuffers = 0;  ///< 0: as many as are useful
    int mTimeout = 5;
    std::optional<PictureFiles> mFiles;
};

void AcquireCommand::checkBuffers() const {
    if (mBuffers == 1 && mCount != 1) {
        throw ToolError(kExitUsage, "a single buffer serves a single picture; use --buffers 2 or more");
    }
}

void AcquireCommand::openOutput() {
    if (mOutput.empty()) return;
    mFiles.emplace(mOutput);
    if (!mFiles->isNumbered() && mCount != 1) {
        throw ToolError(kExitUsage, fmt::format("the output '{}' has no place for the picture's number; write for "
                                                "example frame_%03d.png",
                                                mOutput));
    }
    mFiles->prepareFolder();
}

frameindex_t AcquireCommand::bufferCount(const Window& window) const {
    if (mBuffers != 0) return mBuffers;
    const auto fitting = static_cast<frameindex_t>(
        std::min<uint64_t>(kDefaultBufferMemory / window.bytes(), std::numeric_limits<frameindex_t>::max()));
    return std::min(pictures(), std::clamp(fitting, kFewestDefaultBuffers, frameindex_t{1024}));
}

int AcquireCommand::run(Session& session) {
    checkBuffers();
    openOutput();
    mState.check();
    mSource.prepareCamera();
    StopSignals signals;
    host::Grabber& grabber = session.grabber();
    mState.load(grabber);
    mSource.select(grabber);
    mState.set(grabber);
    const Window window = readWindow(grabber);
    const frameindex_t buffers = bufferCount(window);
    checkMemory(window, buffers);
    const RecordingReport report = acquire(grabber, window, buffers, signals);
    printStatistics(window, report);
    return finish(grabber, report, signals.received());
}

RecordingReport AcquireCommand::acquire(host::Grabber& grabber, const Window& window, frameindex_t buffers,
                                        StopSignals& signals) {
    const host::BufferSet memory(grabber, static_cast<size_t>(window.bytes()), buffers);
    host::Acquisition acquisition(grabber, memory, pictures());
    signals.setAction([&] { acquisition.stop(); });
    RecordingPlan plan;
    plan.pictures = pictures();
    plan.timeoutSeconds = mTimeout;
    plan.width = window.width;
    plan.height = window.height;
    plan.framesPerPicture = framesPerPicture(grabber);
    if (mFiles) plan.files = &*mFiles;
    RecordingReport report = Recording(acquisition, signals, plan).run();
    signals.setAction(nullptr);
    const int stopCode = acquisition.stop();
    if (stopCode < 0 && report.end == RecordingEnd::Complete) {
        report.end = RecordingEnd::StopFailed;
        report.code = stopCode;
    }
    return report;
}

void AcquireCommand::printStatistics(const Window& window, const RecordingReport& report) const {
    const uint64_t taken = report.pictures + report.incomplete;
    const std::string wanted = mCount == 0 ? "" : fmt::format(" of {}", mCount);
    const uint64_t lost = report.overwritten + report.dropped;
    Table table;
    table.add({"pictures", fmt::format("{}{}", report.pictures, wanted)});
    table.add({"size", fmt::format("{} x {} pixels, {}", window.width, window.height,
                                   formatBytes(static_cast<double>(window.bytes())))});
    if (taken > 1 && report.seconds > 0) {
        // The first picture starts the clock, so one interval less than pictures.
        const double rate = static_cast<double>(taken - 1) / report.seconds;
        table.add({"rate", fmt::format("{:.1f} pictures/s, {:.1f} MB/s", rate,
                                       rate * static_cast<double>(window.bytes()) / 1e6)});
    } else {
        table.add({"rate", "- (takes two pictures)"});
    }
    std::string losses = fmt::format("{}", lost);
    if (lost != 0) {
        losses += fmt::format(
            " ({} dropped by the board, {} overwritten before they were taken: use more --buffers or "
            "a faster disk)",
            report.dropped, report.overwritten);
    }
    table.add({"lost", losses});
    if (report.incomplete != 0) table.add({"incomplete", fmt::format("{} (not saved)", report.incomplete)});
    if (mFiles && report.pictures != 0) table.add({"saved to", mOutput});
    fmt::print("{}", table.text());
}

int AcquireCommand::finish(const host::Grabber& grabber, const RecordingReport& report, int signal) const {
    switch (report.end) {
        case RecordingEnd::Complete:
            return kExitOk;
        case RecordingEnd::Interrupted:
            return kSignalExitBase + signal;
        case RecordingEnd::TimedOut:
            throw ToolError(kExitEnvironment, fmt::format("time-out: picture {} did not arrive within {} s; {}",
                                                          report.waitedFor, mTimeout, reasonForSilence(grabber)));
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

}  // namespace

std::unique_ptr<Command> makeAcquireCommand(CLI::App& options) { return std::make_unique<AcquireCommand>(options); }

}  // namespace quillon::tool
