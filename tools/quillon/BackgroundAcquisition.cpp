#include "BackgroundAcquisition.h"

#include <fmt/format.h>

#include "AcquireReport.h"

namespace quillon::tool {

BackgroundAcquisition::BackgroundAcquisition(host::Grabber& grabber, const AcquireSettings& settings)
    : mGrabber(grabber), mRun(grabber, settings) {
    mThread = std::thread([this] { run(); });
    try {
        mStarted.get_future().get();
    } catch (...) {
        mThread.join();
        throw;
    }
}

void BackgroundAcquisition::run() {
    bool hasStarted = false;
    try {
        mReport = mRun.run(mStop.get_token(), mGiveUp.get_token(), [&] {
            hasStarted = true;
            mStarted.set_value();
        });
    } catch (...) {
        mException = std::current_exception();
    }
    mIsDone = true;
    if (!hasStarted) mStarted.set_exception(mException);
}

BackgroundAcquisition::~BackgroundAcquisition() {
    mGiveUp.request_stop();
    stop({});
}

std::string BackgroundAcquisition::progressText() const {
    const frameindex_t wanted = mRun.settings().pictures();
    const std::string of = wanted == kEndless ? "" : fmt::format(" of {}", wanted);
    return fmt::format("{}{} pictures, {} lost", mRun.progress().taken.load(), of, mRun.progress().lost.load());
}

void BackgroundAcquisition::stop(const std::stop_token& giveUp) {
    if (!mThread.joinable()) return;
    mStop.request_stop();
    const std::stop_callback giveUpToo(giveUp, [this] { mGiveUp.request_stop(); });
    mThread.join();
}

std::string BackgroundAcquisition::report() const { return mReport ? reportText(mRun, *mReport) : ""; }

void BackgroundAcquisition::throwUnlessWell() const {
    if (mException) std::rethrow_exception(mException);
    mRun.saveHistogram();
    if (mReport) tool::throwUnlessWell(mGrabber, mRun, *mReport);
}

}  // namespace quillon::tool
