#include <fmt/format.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include "AcquireReport.h"
#include "AcquireSettings.h"
#include "AcquisitionRun.h"
#include "Command.h"
#include "PictureSource.h"
#include "ProgressLine.h"
#include "Session.h"
#include "SoftwareTriggers.h"
#include "StateOptions.h"
#include "StopSignals.h"
#include "ToolError.h"

namespace quillon::tool {

namespace {

constexpr int kSignalExitBase = 128;

class AcquireCommand : public Command {
public:
    explicit AcquireCommand(CLI::App& options) : mSource(options), mState(options) {
        addOptions(options, mSettings);
        options
            .add_option("--trigger-mode", mTriggerMode,
                        "what starts an exposure: name or number of an entry of FG_TRIGGERMODE; comes before --set")
            ->type_name("MODE");
        options
            .add_option("--software-triggers", mTriggerText,
                        "send so many software triggers, at that rate or as soon as the board takes them; -n is then "
                        "N by itself")
            ->type_name("N[@HZ]");
    }

    int run(Session& session) override;

private:
    void check();
    void prepare(host::Grabber& grabber) const;
    RecordingReport acquire(host::Grabber& grabber, AcquisitionRun& run, StopSignals& signals);

    PictureSource mSource;
    StateOptions mState;
    AcquireSettings mSettings;
    std::string mTriggerMode;
    std::string mTriggerText;
    std::optional<TriggerSeries> mTriggers;
    TriggerReport mTriggerReport;
};

void AcquireCommand::check() {
    if (!mTriggerText.empty()) {
        mTriggers = parseTriggerSeries(mTriggerText);
        if (!mSettings.count) mSettings.count = static_cast<frameindex_t>(mTriggers->count);
    }
    checkSettings(mSettings);
    if (!mSettings.output.empty()) PictureFiles(mSettings.output).prepareFolder();
    mState.check();
    mSource.prepareCamera();
}

void AcquireCommand::prepare(host::Grabber& grabber) const {
    mState.load(grabber);
    mSource.select(grabber);
    if (!mTriggerMode.empty()) applySetting(grabber, "FG_TRIGGERMODE=" + mTriggerMode);
    mState.set(grabber);
    if (mTriggers) checkTriggerMode(grabber);
}

int AcquireCommand::run(Session& session) {
    check();
    StopSignals signals;
    host::Grabber& grabber = session.grabber();
    prepare(grabber);
    AcquisitionRun run(grabber, mSettings);
    const RecordingReport report = acquire(grabber, run, signals);
    fmt::print("{}", reportText(run, report, mTriggers ? &mTriggerReport : nullptr));
    if (mTriggers && !mSettings.isJson) {
        fmt::print("{}, {} attempts repeated\n", describe(mTriggerReport, *mTriggers), mTriggerReport.refusals);
    }
    run.saveHistogram();
    if (mTriggers) throwUnlessSent(mTriggerReport, *mTriggers);
    throwUnlessWell(grabber, run, report);
    return report.end == RecordingEnd::Stopped ? kSignalExitBase + signals.received() : kExitOk;
}

RecordingReport AcquireCommand::acquire(host::Grabber& grabber, AcquisitionRun& run, StopSignals& signals) {
    std::stop_source stop;
    std::stop_source giveUp;
    // The first Ctrl-C ends the acquisition, a second one also the writing of what was taken.
    signals.setAction([&] { stop.stop_requested() ? giveUp.request_stop() : stop.request_stop(); });
    std::jthread triggers;
    const auto started = [&] {
        if (!mTriggers) return;
        triggers = std::jthread([&](const std::stop_token& end) {
            mTriggerReport = sendSoftwareTriggers(grabber, *mTriggers, end);
            if (mTriggerReport.code != 0) stop.request_stop();
        });
    };
    const ProgressLine progress(run);
    RecordingReport report = run.run(stop.get_token(), giveUp.get_token(), started);
    if (triggers.joinable()) {
        triggers.request_stop();
        triggers.join();
    }
    signals.setAction(nullptr);
    return report;
}

}  // namespace

std::unique_ptr<Command> makeAcquireCommand(CLI::App& options) { return std::make_unique<AcquireCommand>(options); }

}  // namespace quillon::tool
