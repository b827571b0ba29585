#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "simulation/board/BoardCodes.h"
#include "simulation/board/BoardTime.h"

namespace simulation {

/// A stretch of every transfer, counted from its start.
struct TransferGap {
    BoardTime after{0};
    BoardTime length{0};  // 0 = there is none

    [[nodiscard]] bool covers(BoardTime elapsed) const { return elapsed >= after && elapsed - after < length; }
};

/// Why a frame that was to go to the host does not get there.
enum class Loss : uint8_t { none, dropped, held };

/// What goes wrong on purpose: a bad cable, a board under load, counters that are about to wrap. At first nothing
/// does. Any thread may call it, at any time; a setting that is refused changes nothing.
class Disturbances {
public:
    static constexpr double kLongestGapMs = 1e9;
    static constexpr double kLongestDelayUs = 1'000'000.0;
    static constexpr uint32_t kLargestTag = 0x7FFF'FFFF;  // tags are answered as int, whose negative half are codes

    /// Of the frames that leave the camera, \p percent get lost on the way: the same ones for the same \p seed.
    [[nodiscard]] Outcome setDrop(double percent, uint32_t seed);

    /// The camera is unplugged, or the DMA brings nothing, for so long after the start of each transfer.
    [[nodiscard]] Outcome setLinkGap(double afterMs, double lengthMs);
    [[nodiscard]] Outcome setDmaGap(double afterMs, double lengthMs);

    /// The DMA brings nothing until it is released.
    void holdDma(bool isHeld);

    /// \param tag of the first frame of a transfer, up to kLargestTag.
    [[nodiscard]] Outcome setFirstTag(uint32_t tag);

    /// \param ns which the time stamps show when the board is configured.
    [[nodiscard]] Outcome setFirstTimeStamp(uint64_t ns);

    /// \param us that every access to a register takes, up to kLongestDelayUs.
    [[nodiscard]] Outcome setRegisterDelay(double us);

    // What the board asks. A time is counted from the start of the transfer.

    [[nodiscard]] bool linkIsDown(BoardTime elapsed) const;
    [[nodiscard]] Loss lossOf(uint64_t frame, BoardTime elapsed) const;
    [[nodiscard]] uint32_t tagOf(uint64_t frame) const;
    [[nodiscard]] uint64_t timeStampOf(BoardTime time) const;

    /// Takes the time of an access to a register.
    void delayAccess() const;

private:
    struct Settings {
        uint64_t dropLimit = 0;  // of 2^32 frames
        uint32_t dropSeed = 0;
        TransferGap link;
        TransferGap dma;
        bool dmaIsHeld = false;
        uint32_t firstTag = 1;
        uint64_t firstTimeStamp = 0;
    };
    [[nodiscard]] Outcome setGap(TransferGap Settings::*gap, double afterMs, double lengthMs);
    template <class Value>
    void set(Value Settings::*setting, Value value);
    [[nodiscard]] Settings settings() const;

    mutable std::mutex mMutex;
    Settings mSettings;                                   // guarded by mMutex
    std::atomic<BoardTime> mRegisterDelay{BoardTime(0)};  // apart from them, as every access asks for it
};

}  // namespace simulation
