#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "host/Grabber.h"

namespace quillon::host {

/// Buffers of equal size that the board fills with pictures, one after another and round again. Owns their memory
/// and their registration; the grabber is borrowed and must outlive it. An acquisition into it must have stopped
/// before it is destroyed.
class BufferSet {
public:
    /// Allocates and registers the buffers. The memory is touched, so that the acquisition meets no page fault.
    /// \param bytes size of one buffer, at least 1
    /// \param count number of buffers, at least 1
    /// \throws HostError when memory is short or the board refuses a buffer
    BufferSet(const Grabber& grabber, size_t bytes, frameindex_t count);
    BufferSet(const BufferSet&) = delete;
    BufferSet& operator=(const BufferSet&) = delete;
    ~BufferSet();

    [[nodiscard]] dma_mem* handle() const { return mHandle; }
    [[nodiscard]] frameindex_t count() const { return static_cast<frameindex_t>(mBuffers.size()); }
    [[nodiscard]] size_t bytes() const { return mBytes; }

    /// \param picture from 1
    /// \return index of the buffer that receives it
    [[nodiscard]] frameindex_t indexOf(frameindex_t picture) const { return (picture - 1) % count(); }
    [[nodiscard]] std::span<const std::byte> buffer(frameindex_t index) const {
        return mBuffers[static_cast<size_t>(index)];
    }

private:
    void allocate(frameindex_t count);
    void registerAll();
    void release();

    const Grabber& mGrabber;
    const size_t mBytes;
    std::vector<std::vector<std::byte>> mBuffers;
    dma_mem* mHandle = nullptr;
    frameindex_t mRegistered = 0;  ///< buffers that the board knows
};

}  // namespace quillon::host
