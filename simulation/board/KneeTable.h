#pragma once

#include <array>
#include <cstdint>
#include <mutex>

#include "simulation/board/PixelCurve.h"
#include "simulation/board/RegisterRow.h"

namespace simulation {

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
