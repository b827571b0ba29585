#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace simulation {

/// What is known of the picture in a buffer.
struct PictureRecord {
    int32_t picture = 0;  // number of the picture in its transfer, from 1; 0 = none yet
    uint64_t frame = 0;   // number of the camera frame, from 1
    size_t length = 0;    // bytes written
    std::chrono::nanoseconds stamp{0};
    uint32_t tag = 0;        // what the host sees of the frame's number
    uint64_t timeStamp = 0;  // and of the time, nanoseconds
};

/// How a transfer uses the buffers: picture p goes to buffer (firstBuffer + p - 1) modulo their number.
struct TransferPlan {
    int32_t firstBuffer = 0;
    int32_t pictures = 0;  // how many, at least 1
    size_t length = 0;     // most bytes of a picture; 0 = as many as its buffer takes
    bool handShake = false;
};

/// The host's memory for pictures, and the pictures of its current or last transfer. The host's threads and the DMA
/// thread use it at the same time; it takes no lock but its own.
class BufferSet {
public:
    static constexpr int32_t kMostBuffers = 1 << 20;

    /// \param totalSize bytes of all buffers together, as the host announced them. \param count 1 to kMostBuffers.
    BufferSet(size_t totalSize, int32_t count);

    [[nodiscard]] size_t totalSize() const { return mTotalSize; }
    [[nodiscard]] int32_t count() const { return static_cast<int32_t>(mSlots.size()); }

    /// The host lends a buffer until remove(). \return 0, or kBadArgument where the index is out of range or taken.
    [[nodiscard]] int add(int32_t index, std::span<uint8_t> memory);

    /// Gives a buffer back; afterwards nothing writes to it. Pictures for it are lost. \return 0 or kBadArgument.
    [[nodiscard]] int remove(int32_t index);

    /// Hand-shake: the host has done with this buffer. \return 0 or kBadArgument.
    [[nodiscard]] int handBack(int32_t index);

    /// Whether every buffer has its memory.
    [[nodiscard]] bool isComplete() const;

    // What the DMA does.

    void begin(const TransferPlan& plan);
    void end();
    [[nodiscard]] bool isRunning() const;

    enum class ClaimState { ready, noBuffer, ended };
    struct Claim {
        ClaimState state;
        std::span<uint8_t> target;  // held against remove() until publish()
    };

    /// The buffer for \p picture; with \p waits the call waits until the host has handed it back.
    [[nodiscard]] Claim claim(int32_t picture, bool waits);

    /// The claimed buffer has its picture. After the last one the transfer ends. \return whether it goes on.
    [[nodiscard]] bool publish(const PictureRecord& record);

    // What the host asks.

    /// Waits up to \p seconds until \p picture has arrived.
    /// \return the number of the last picture; kBadArgument for a picture below 1 or negative seconds; kTimeOut; or
    ///         kStopped, at once, when no transfer runs that brings it.
    [[nodiscard]] int32_t wait(int32_t picture, int seconds) const;

    [[nodiscard]] int32_t lastPicture() const;

    /// What lies in buffer \p index, taken modulo the number of buffers.
    [[nodiscard]] std::optional<PictureRecord> inBuffer(int32_t index) const;

    /// What is known of \p picture, while it still lies in its buffer.
    [[nodiscard]] std::optional<PictureRecord> ofPicture(int32_t picture) const;

private:
    struct Slot {
        std::span<uint8_t> memory;
        PictureRecord record;
        bool isWithHost = false;
    };
    static constexpr size_t kNone = SIZE_MAX;

    [[nodiscard]] bool has(int32_t index) const { return index >= 0 && static_cast<size_t>(index) < mSlots.size(); }
    [[nodiscard]] size_t slotOf(int32_t picture) const;

    const size_t mTotalSize;
    mutable std::mutex mMutex;
    mutable std::condition_variable mChanged;
    std::vector<Slot> mSlots;  // guarded by mMutex, its size is constant
    TransferPlan mPlan;        // guarded by mMutex
    bool mRuns = false;        // guarded by mMutex
    int32_t mLastPicture = 0;  // guarded by mMutex
    uint32_t mTransfer = 0;    // guarded by mMutex; a wait belongs to one transfer and ends with it
    size_t mClaimed = kNone;   // guarded by mMutex
};

}  // namespace simulation
