#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <stop_token>

#include "host/Acquisition.h"

namespace quillon::host {

/// Looks at one frame. Its bytes are a copy that stays as it is until the callback returns.
/// \return whether to go on; false ends the acquisition
using FrameCallback = std::function<bool(const Frame&)>;

/// What acquireFrames is to do.
struct FrameLoopPlan {
    /// Goes on until the stop or the callback's refusal.
    static constexpr frameindex_t kEndless = std::numeric_limits<frameindex_t>::max();

    frameindex_t frames = 1;  ///< frames that the board is to deliver, lost ones included; at least 1
    int timeoutSeconds = 5;   ///< longest wait for one frame, 0 or more
    int port = 0;
};

/// What ended the loop.
enum class FrameLoopEnd {
    Complete,  ///< all frames
    Refused,   ///< the callback returned false
    Stopped,   ///< the stop
    TimedOut,  ///< the camera fell silent
    Failed     ///< the board
};

/// How the loop went. A frame that the callback did not see is counted, never passed over in silence.
struct FrameLoopReport {
    uint64_t delivered = 0;    ///< calls of the callback
    uint64_t overwritten = 0;  ///< frames whose buffer the board needed again first: use more buffers
    uint64_t dropped = 0;      ///< frames that reached no buffer: gaps in the tags, which count camera frames
    FrameLoopEnd end = FrameLoopEnd::Complete;
    int code = 0;  ///< the board's own code where it timed out or failed, or the code of a stop that failed

    [[nodiscard]] uint64_t lost() const { return overwritten + dropped; }
};

/// Acquires and calls \p callback with each frame, in this thread. When the callback falls behind, the loop goes on
/// with the newest frame and counts those that it missed. The acquisition has stopped when this returns or throws.
/// \param stop ends a wait at once, from any thread
/// \throws HostError when the acquisition does not start, and whatever the callback throws
FrameLoopReport acquireFrames(Grabber& grabber, const BufferSet& buffers, const FrameLoopPlan& plan,
                              const FrameCallback& callback, const std::stop_token& stop = {});

}  // namespace quillon::host
