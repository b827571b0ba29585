#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "AcquireSettings.h"
#include "PictureFiles.h"
#include "PictureWindow.h"
#include "PictureWriter.h"
#include "Recording.h"
#include "host/Acquisition.h"
#include "host/BufferSet.h"

namespace quillon::tool {

/// One acquisition with all that it needs: buffers, files, the thread that writes them. The grabber is borrowed; its
/// parameters may be written by another thread while it runs.
class AcquisitionRun {
public:
    /// Makes everything ready and starts nothing.
    /// \throws ToolError when the memory or the output cannot be had
    AcquisitionRun(host::Grabber& grabber, const AcquireSettings& settings);
    AcquisitionRun(const AcquisitionRun&) = delete;
    AcquisitionRun& operator=(const AcquisitionRun&) = delete;

    /// Acquires until all pictures are there, something fails, or a stop is requested; what was taken until then is
    /// still written. Call it once.
    /// \param giveUp ends the writing as well
    /// \param started called when the board acquires
    /// \throws host::HostError when the acquisition does not start
    RecordingReport run(const std::stop_token& stop, const std::stop_token& giveUp,
                        const std::function<void()>& started = {});

    /// \throws ToolError when the histogram was asked for and cannot be saved
    void saveHistogram() const;

    [[nodiscard]] const AcquireSettings& settings() const { return mSettings; }
    [[nodiscard]] const PictureWindow& window() const { return mWindow; }
    [[nodiscard]] const RecordingProgress& progress() const { return mProgress; }

private:
    [[nodiscard]] frameindex_t bufferCount() const;
    [[nodiscard]] RecordingPlan plan();
    /// Adds what the writer tells to the report.
    void finishFiles(RecordingReport& report, const std::stop_token& giveUp);

    host::Grabber& mGrabber;
    const AcquireSettings mSettings;
    const PictureWindow mWindow;
    const uint32_t mFramesPerPicture;
    std::optional<PictureFiles> mFiles;
    std::unique_ptr<host::BufferSet> mBuffers;
    std::optional<PictureWriter> mWriter;
    std::vector<std::byte> mLastPicture;
    RecordingProgress mProgress;
};

}  // namespace quillon::tool
