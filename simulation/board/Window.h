#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "simulation/board/Frame.h"
#include "simulation/board/LineOrder.h"
#include "simulation/board/PixelCurve.h"
#include "simulation/board/RegisterRow.h"

namespace simulation {

/// The part of the sensor that goes to the host, in pixels and lines.
struct Window {
    static constexpr std::array kRegisters{StageRegister{"AAAreaWidth"}, StageRegister{"AAAreaHeight"},
                                           StageRegister{"AAAreaXPos"}, StageRegister{"AAAreaYPos"}};
    using Values = std::array<uint64_t, kRegisters.size()>;

    /// The window moves by whole clock cycles, and the camera delivers this many pixels in one.
    static constexpr uint32_t kPixelsPerClock = 16;

    uint32_t x = 0;
    uint32_t y = 0;
    PictureSize size;

    [[nodiscard]] static Window of(const Values& values);

    bool operator==(const Window&) const = default;
};

/// The frame's way to the DMA: its lines are brought into \p order, which fits its width, and \p window is cut out of
/// them, one byte a pixel, lines packed; zeros where the window leaves the sensor. All of that passes \p curve. What
/// does not fit into \p target is dropped. \return the number of bytes written.
size_t cutWindow(const Window& window, Frame& frame, const LineOrder& order, const PixelCurve& curve,
                 std::span<uint8_t> target);

}  // namespace simulation
