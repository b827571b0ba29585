#include "AcquisitionRun.h"

#include <algorithm>

#include "FileBeside.h"
#include "HistogramSheet.h"

namespace quillon::tool {

namespace {

/// Memory that the buffers take at most when their number is not given.
constexpr uint64_t kDefaultBufferMemory = 256'000'000;
constexpr frameindex_t kFewestDefaultBuffers = 4;
constexpr frameindex_t kMostDefaultBuffers = 1024;
/// Pictures that wait for the disk outside the board's buffers: few, because the buffers are a queue themselves.
constexpr size_t kWaitingPictures = 4;
/// A TIFF file that may become larger needs wider offsets.
constexpr uint64_t kLargeFile = 4'000'000'000;

}  // namespace

AcquisitionRun::AcquisitionRun(host::Grabber& grabber, const AcquireSettings& settings)
    : mGrabber(grabber),
      mSettings(settings),
      mWindow(readWindow(grabber)),
      mFramesPerPicture(framesPerPicture(grabber)) {
    checkSettings(settings);
    const frameindex_t buffers = bufferCount();
    const bool isSaved = !settings.output.empty();
    checkMemory(mWindow, buffers + (isSaved ? static_cast<frameindex_t>(kWaitingPictures) : 0));
    if (isSaved) {
        mFiles.emplace(settings.output, settings.isCompressed ? PngEffort::Small : PngEffort::Fast);
        mFiles->prepareFolder();
        mFiles->setLargeFile(static_cast<uint64_t>(settings.pictures()) > kLargeFile / mWindow.bytes());
        mWriter.emplace(*mFiles, mWindow.width, mWindow.height, kWaitingPictures);
    }
    mBuffers = std::make_unique<host::BufferSet>(grabber, static_cast<size_t>(mWindow.bytes()), buffers);
}

frameindex_t AcquisitionRun::bufferCount() const {
    if (mSettings.buffers != 0) return mSettings.buffers;
    const auto fitting = static_cast<frameindex_t>(
        std::min<uint64_t>(kDefaultBufferMemory / mWindow.bytes(), static_cast<uint64_t>(kMostDefaultBuffers)));
    return std::min(mSettings.pictures(), std::max(fitting, kFewestDefaultBuffers));
}

RecordingPlan AcquisitionRun::plan() {
    RecordingPlan plan;
    plan.pictures = mSettings.pictures();
    plan.timeoutSeconds = mSettings.timeout;
    plan.width = mWindow.width;
    plan.height = mWindow.height;
    plan.framesPerPicture = mFramesPerPicture;
    plan.writer = mWriter ? &*mWriter : nullptr;
    plan.keepsLast = !mSettings.histogram.empty();
    return plan;
}

RecordingReport AcquisitionRun::run(const std::stop_token& stop, const std::stop_token& giveUp,
                                    const std::function<void()>& started) {
    host::Acquisition acquisition(mGrabber, *mBuffers, mSettings.pictures());
    RecordingReport report;
    {
        const std::stop_callback stopBoard(stop, [&] { acquisition.stop(); });
        if (started) started();
        Recording recording(acquisition, stop, plan(), mProgress);
        report = recording.run();
        mLastPicture = recording.lastPicture();
    }
    const int stopCode = acquisition.stop();
    if (stopCode < 0 && report.end == RecordingEnd::Complete) {
        report.end = RecordingEnd::StopFailed;
        report.code = stopCode;
    }
    finishFiles(report, giveUp);
    return report;
}

void AcquisitionRun::finishFiles(RecordingReport& report, const std::stop_token& giveUp) {
    if (!mWriter) return;
    mWriter->finish(giveUp);
    report.pictures = mWriter->written();
    report.problem = mWriter->problem();
    if (report.problem.empty()) {
        report.slowDisk += mWriter->givenUp();
    } else {
        report.end = RecordingEnd::FileFailed;
    }
}

void AcquisitionRun::saveHistogram() const {
    if (mSettings.histogram.empty() || mLastPicture.empty()) return;
    const HistogramSheet sheet({mWindow.width, mWindow.height, mLastPicture});
    NewFile file(mSettings.histogram);
    errno = 0;
    if (!writePng(file.stream(), sheet.picture(), PngEffort::Fast)) {
        refuseFile(mSettings.histogram, errno == 0 ? EINVAL : errno);
    }
    file.complete();
}

}  // namespace quillon::tool
