#pragma once

#include <array>
#include <cstdint>

#include "simulation/board/LineOrder.h"
#include "simulation/board/ReadoutGeometry.h"
#include "simulation/board/RegisterRow.h"

namespace simulation {

/// The block that brings the pixels of a line, which come in the order of the taps, back into the order of the sensor.
/// Used by one thread.
class TapSorter {
public:
    static constexpr std::array kRegisters{StageRegister{"TapNumber"},        StageRegister{"TapDirection"},
                                           StageRegister{"ReadOutMirror"},    StageRegister{"ReadOutTapOrder"},
                                           StageRegister{"InsertionBypass"},  StageRegister{"TapSortingSchemaA"},
                                           StageRegister{"TapSortingSchemaB"}};
    using Values = std::array<uint64_t, kRegisters.size()>;

    /// The geometry for which the block is set up; with values that belong to none it passes the pixels on as they
    /// come, as for the unchanged one.
    [[nodiscard]] static const ReadoutGeometry& geometryFor(const Values& values);

    /// The order of a line of \p width pixels behind the block when it left the camera as \p sent says. A block set up
    /// for taps passes on as it comes what is not a multiple of kReadoutStep wide. The result is borrowed until the
    /// next call, and kept as long as the arguments stay the same.
    [[nodiscard]] const LineOrder& order(const Values& values, const ReadoutGeometry& sent, uint32_t width);

private:
    Values mValues{};
    const ReadoutGeometry* mSent = nullptr;
    uint32_t mWidth = 0;
    LineOrder mOrder;
};

}  // namespace simulation
