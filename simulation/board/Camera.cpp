#include "simulation/board/Camera.h"

#include "simulation/board/Scene.h"

namespace simulation {

namespace {

Outcome checkReadout(const ReadoutGeometry& geometry, uint32_t width) {
    if (&geometry == &unchangedGeometry() || width % kReadoutStep == 0) return {};
    return {kBadSetting, "geometry " + std::string(geometry.name) + " does not read out a sensor of " +
                             std::to_string(width) + " pixels a line: it takes a multiple of " +
                             std::to_string(kReadoutStep) + "; " + std::string(unchangedGeometry().name) +
                             " takes every width"};
}

}  // namespace

Outcome Camera::setSource(std::unique_ptr<PictureSource> source) {
    Outcome outcome = checkReadout(*mGeometry, source->size().width);
    if (outcome.code == kOk) {
        mSource = std::move(source);
        mPixels = mSource->size().pixels();
    }
    return outcome;
}

Outcome Camera::setGeometry(const ReadoutGeometry& geometry) {
    Outcome outcome = checkReadout(geometry, source().size().width);
    if (outcome.code == kOk) mGeometry = &geometry;
    return outcome;
}

PictureSource& Camera::source() {
    if (mSource == nullptr) {
        std::string why;
        mSource = Scene::create(kDefaultSize, why);
    }
    return *mSource;
}

Outcome Camera::setRate(double rateHz) {
    // Written so that "not a number" is refused as well.
    if (!(rateHz >= kLowestRateHz && rateHz <= kHighestRateHz)) {
        return {kBadSetting,
                "a camera rate of " + std::to_string(rateHz) + " frames/s cannot be had: it is 0.01 to 100000"};
    }
    mPeriodNs = static_cast<int64_t>(1e9 / rateHz);
    return {};
}

Outcome Camera::setReadoutTime(double us) {
    if (!(us >= 0 && us <= kLongestReadoutUs)) {
        return {kBadSetting, "a readout time of " + std::to_string(us) + " us cannot be had: it is 0 to 1000000"};
    }
    mReadoutNs = static_cast<int64_t>(us * 1000);
    return {};
}

std::chrono::nanoseconds Camera::readoutTime() const {
    const int64_t set = mReadoutNs;
    // Eight taps of 85 MHz: 17 pixels in 25 ns.
    return std::chrono::nanoseconds(set != 0 ? set : static_cast<int64_t>(mPixels * 25 / 17));
}

}  // namespace simulation
