#include "host/Acquisition.h"

#include <algorithm>
#include <tuple>

#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::host {

Acquisition::Acquisition(Grabber& grabber, const BufferSet& buffers, frameindex_t pictures, AcquisitionMode mode,
                         int port)
    : mGrabber(grabber), mBuffers(buffers), mPictures(pictures), mMode(mode), mPort(port) {
    if (pictures < 1) throw HostError(FG_INVALID_ARGUMENT, "an acquisition needs one picture or more");
    const int code =
        mGrabber.functions().acquire(mGrabber.handle(), mPort, mPictures, static_cast<int>(mMode), mBuffers.handle());
    if (code < 0) throw HostError(code, "the acquisition does not start: " + describeResultCode(code));
}

Acquisition::~Acquisition() { std::ignore = stop(); }

frameindex_t Acquisition::waitFor(frameindex_t number, int timeoutSeconds) {
    return mGrabber.functions().getLastPicNumberBlocking(mGrabber.handle(), number, mPort, timeoutSeconds,
                                                         mBuffers.handle());
}

frameindex_t Acquisition::lastPicture() const {
    // Asked of the board: the applet's own query must not run beside a stop in another thread.
    return mGrabber.functions().dmaTestBuffer(mGrabber.device(), 0, mBuffers.handle());
}

Frame Acquisition::frame(frameindex_t number) const {
    const AppletFunctions& functions = mGrabber.functions();
    FgDevice* device = mGrabber.device();
    const frameindex_t index = mBuffers.indexOf(number);
    Frame frame;
    frame.number = number;
    frame.tag = static_cast<uint32_t>(functions.getDmaTag(device, mBuffers.handle(), index));
    frame.timeStamp = functions.getDmaTimeStampLong(device, mBuffers.handle(), index);
    frame.length = functions.getDmaLength(device, mBuffers.handle(), number);
    frame.bytes = mBuffers.buffer(index).first(std::min(frame.length, mBuffers.bytes()));
    return frame;
}

bool Acquisition::isOverwritten(frameindex_t number) const {
    const frameindex_t last = lastPicture();
    if (last < number) return true;  // no answer: the picture cannot be vouched for
    const bool isMoreToCome = last < mPictures;
    const frameindex_t inTransfer = isMoreToCome ? last + 1 : last;
    return inTransfer - number >= mBuffers.count();
}

int Acquisition::stop() {
    const std::lock_guard lock(mStopLock);
    if (mIsStopped) return FG_OK;
    const int code =
        mGrabber.functions().stopAcquire(mGrabber.handle(), mPort, mBuffers.handle(), static_cast<int>(mMode));
    mIsStopped = code >= 0;
    return code;
}

}  // namespace quillon::host
