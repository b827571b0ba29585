#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

#include "simulation/board/BoardCodes.h"
#include "simulation/board/PictureSource.h"
#include "simulation/board/ReadoutGeometry.h"

namespace simulation {

/// The camera at the board's connectors: it runs free at its own rate. The link and the rate may change at any time
/// from any thread; the source and the geometry only while no transfer runs.
class Camera {
public:
    static constexpr double kDefaultRateHz = 100.0;
    static constexpr double kLowestRateHz = 0.01;
    static constexpr double kHighestRateHz = 100'000.0;
    static constexpr PictureSize kDefaultSize{1024, 1024};

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

    void setLink(bool isUp) { mLinkIsUp = isUp; }
    [[nodiscard]] bool linkIsUp() const { return mLinkIsUp; }

private:
    std::unique_ptr<PictureSource> mSource;
    const ReadoutGeometry* mGeometry = &unchangedGeometry();
    std::atomic<int64_t> mPeriodNs{static_cast<int64_t>(1e9 / kDefaultRateHz)};
    std::atomic<bool> mLinkIsUp{true};
};

}  // namespace simulation
