#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

#include "simulation/board/RegisterRow.h"

namespace simulation {

/// What becomes of each 8-bit pixel value.
class PixelCurve {
public:
    static constexpr size_t kShades = 256;

    /// Every value stays as it is.
    PixelCurve();

    explicit PixelCurve(const std::array<uint8_t, kShades>& shades);

    /// Replaces every pixel; the identity does not even look at them.
    void apply(std::span<uint8_t> pixels) const;

    [[nodiscard]] uint8_t operator[](uint8_t shade) const { return mShades[shade]; }
    [[nodiscard]] bool isIdentity() const { return mIsIdentity; }

private:
    std::array<uint8_t, kShades> mShades;
    bool mIsIdentity;
};

/// The knee lookup table of a gray path: 1024 segments, each a straight line from its start to its end value, 65536 at
/// full scale. Black enters at the start of the first segment and white at the end of the last one. Any thread may
/// load segments; one thread asks for the curve.
class KneeTable {
public:
    static constexpr std::array kRegisters{StageRegister{"AAKneeLutStart"}, StageRegister{"AAKneeLutEnd"},
                                           StageRegister{"AAKneeLutAddr"}, StageRegister{"AAKneeLutWrite"}};
    using Values = std::array<uint64_t, kRegisters.size()>;

    static constexpr uint32_t kSegments = 1024;
    static constexpr uint32_t kFullScale = 65536;

    KneeTable() { reset(); }

    /// The straight line through all segments, as after power-up.
    void reset();

    /// The strobe: takes the segment that the registers hold. Of the bits of the last one only bit 0 belongs to a table
    /// that a gray path has, and without it nothing happens.
    void load(const Values& values);

    /// The curve of the segments loaded so far. It is borrowed until the next call, and made anew only after a load.
    [[nodiscard]] const PixelCurve& curve();

private:
    struct Segment {
        uint32_t start = 0;
        uint32_t end = 0;
    };

    [[nodiscard]] PixelCurve makeCurve() const;

    std::mutex mMutex;
    std::array<Segment, kSegments> mSegments;  // guarded by mMutex
    bool mHasChanged = true;                   // guarded by mMutex
    PixelCurve mCurve;                         // of the thread that asks for it
};

}  // namespace simulation
