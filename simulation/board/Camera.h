#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

#include "simulation/board/BoardCodes.h"
#include "simulation/board/PictureSource.h"
#include "simulation/board/ReadoutGeometry.h"

namespace simulation {

/// What starts the camera's exposures: nothing (it runs free), a camera control line, or, as it chooses, CC1 while
/// ExSync is on and else nothing.
enum class CameraTrigger : uint8_t { automatic, free, cc1, cc2, cc3, cc4 };

/// The camera at the board's connectors. The link, the rate, the trigger and the readout time may change at any time
/// from any thread; the source and the geometry only while no transfer runs.
class Camera {
public:
    static constexpr double kDefaultRateHz = 100.0;
    static constexpr double kLowestRateHz = 0.01;
    static constexpr double kHighestRateHz = 100'000.0;
    static constexpr PictureSize kDefaultSize{1024, 1024};
    static constexpr double kLongestReadoutUs = 1'000'000.0;
    static constexpr std::chrono::nanoseconds kNominalExposure = std::chrono::microseconds(4000);

    /// \return 0, or kBadSetting for a width that the present geometry does not read out.
    [[nodiscard]] Outcome setSource(std::unique_ptr<PictureSource> source);

    /// The source; the built-in scene in its default size where none was set.
    [[nodiscard]] PictureSource& source();

    /// The sensor is read out as \p geometry says, which lives as long as the camera.
    /// \return 0, or kBadSetting for one that does not read out the present width.
    [[nodiscard]] Outcome setGeometry(const ReadoutGeometry& geometry);
    [[nodiscard]] const ReadoutGeometry& geometry() const { return *mGeometry; }

    /// \param rateHz frames a second, kLowestRateHz to kHighestRateHz; another rate is refused and changes nothing.
    [[nodiscard]] Outcome setRate(double rateHz);
    [[nodiscard]] std::chrono::nanoseconds period() const { return std::chrono::nanoseconds(mPeriodNs); }

    void setTrigger(CameraTrigger trigger) { mTrigger = trigger; }
    [[nodiscard]] CameraTrigger trigger() const { return mTrigger; }

    /// \param us how long the sensor is read out, up to kLongestReadoutUs; 0 takes it from the size of the sensor.
    [[nodiscard]] Outcome setReadoutTime(double us);
    [[nodiscard]] std::chrono::nanoseconds readoutTime() const;

    void setLink(bool isUp) { mLinkIsUp = isUp; }
    [[nodiscard]] bool linkIsUp() const { return mLinkIsUp; }

private:
    std::unique_ptr<PictureSource> mSource;
    const ReadoutGeometry* mGeometry = &unchangedGeometry();
    std::atomic<int64_t> mPeriodNs{static_cast<int64_t>(1e9 / kDefaultRateHz)};
    std::atomic<bool> mLinkIsUp{true};
    std::atomic<CameraTrigger> mTrigger{CameraTrigger::automatic};
    std::atomic<int64_t> mReadoutNs{0};  // 0 = as the size says
    std::atomic<uint64_t> mPixels{kDefaultSize.pixels()};
};

}  // namespace simulation
