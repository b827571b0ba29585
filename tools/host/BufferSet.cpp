#include "host/BufferSet.h"

#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <tuple>

#include "host/HostError.h"
#include "host/ResultCodes.h"

namespace quillon::host {

BufferSet::BufferSet(const Grabber& grabber, size_t bytes, frameindex_t count) : mGrabber(grabber), mBytes(bytes) {
    if (bytes == 0 || count < 1) throw HostError(FG_INVALID_ARGUMENT, "a buffer set needs a buffer of a byte or more");
    if (bytes > std::numeric_limits<size_t>::max() / static_cast<size_t>(count)) {
        throw HostError(FG_OUT_OF_RESOURCES, "the buffers are larger than any memory");
    }
    allocate(count);
    try {
        registerAll();
    } catch (...) {
        release();
        throw;
    }
}

BufferSet::~BufferSet() { release(); }

void BufferSet::allocate(frameindex_t count) {
    const auto fail = [&] {
        throw HostError(FG_OUT_OF_RESOURCES,
                        "no memory for " + std::to_string(count) + " buffers of " + std::to_string(mBytes) + " bytes");
    };
    try {
        mBuffers.resize(static_cast<size_t>(count));
        for (std::vector<std::byte>& buffer : mBuffers) buffer.resize(mBytes);
    } catch (const std::bad_alloc&) {
        fail();
    } catch (const std::length_error&) {
        fail();
    }
}

void BufferSet::registerAll() {
    const AppletFunctions& functions = mGrabber.functions();
    mHandle = functions.getVirtualUserBuffer(mGrabber.device(), mBytes * mBuffers.size(), count());
    if (mHandle == nullptr) throw HostError(FG_OUT_OF_RESOURCES, "the board accepts no set of buffers of this size");
    for (std::vector<std::byte>& buffer : mBuffers) {
        const int code = functions.addUserBuffer(mGrabber.device(), mHandle, buffer.data(), buffer.size(), mRegistered);
        if (code < 0) {
            throw HostError(
                code, "the board refuses buffer " + std::to_string(mRegistered) + ": " + describeResultCode(code));
        }
        ++mRegistered;
    }
}

void BufferSet::release() {
    if (mHandle == nullptr) return;
    const AppletFunctions& functions = mGrabber.functions();
    while (mRegistered > 0) std::ignore = functions.delUserBuffer(mGrabber.device(), mHandle, --mRegistered);
    std::ignore = functions.freeVirtualUserBuffer(mGrabber.device(), mHandle);
    mHandle = nullptr;
}

}  // namespace quillon::host
