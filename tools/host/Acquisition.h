#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

#include "host/BufferSet.h"
#include "host/Grabber.h"

namespace quillon::host {

/// One picture in its buffer. The bytes are borrowed: they change as soon as the board comes round to the buffer.
struct Frame {
    std::span<const std::byte> bytes;  ///< as many as arrived
    frameindex_t number = 0;           ///< from 1
    uint32_t tag = 0;                  ///< the board's tag of the picture
    uint64_t timeStamp = 0;            ///< the board's 64-bit time stamp
    size_t length = 0;                 ///< bytes that the board reports; may differ from the buffer's size
};

/// How the board uses the buffers.
enum class AcquisitionMode {
    Continuous = 1,  ///< fills them round and round
    Handshake = 2    ///< waits for each buffer to be handed back
};

/// A running acquisition. Starts when constructed, stops at the latest when destroyed. Grabber and buffers are
/// borrowed and must outlive it. One thread waits and looks at frames; any thread may stop.
class Acquisition {
public:
    /// \param pictures number of pictures to acquire, at least 1
    /// \throws HostError with the applet's code when the acquisition does not start
    Acquisition(Grabber& grabber, const BufferSet& buffers, frameindex_t pictures,
                AcquisitionMode mode = AcquisitionMode::Continuous, int port = 0);
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;
    ~Acquisition();

    /// Waits until picture \p number has arrived.
    /// \param timeoutSeconds 0 or more
    /// \return the last picture number, which is \p number or more; or a negative code for a time-out or a stop
    [[nodiscard]] frameindex_t waitFor(frameindex_t number, int timeoutSeconds);

    /// \return the number of the last complete picture, 0 when there is none; or a negative code
    [[nodiscard]] frameindex_t lastPicture() const;

    /// \param number a picture that has arrived
    [[nodiscard]] Frame frame(frameindex_t number) const;

    /// \return whether the board may have begun to fill the buffer of picture \p number with a later one
    [[nodiscard]] bool isOverwritten(frameindex_t number) const;

    /// Stops. A wait in another thread ends at once. Does nothing after the first stop that succeeded.
    /// \return FG_OK or the applet's code
    int stop();

private:
    Grabber& mGrabber;
    const BufferSet& mBuffers;
    const frameindex_t mPictures;
    const AcquisitionMode mMode;
    const int mPort;
    std::mutex mStopLock;
    bool mIsStopped = false;  ///< guarded by mStopLock
};

}  // namespace quillon::host
