#include "simulation/board/Window.h"

#include <algorithm>

namespace simulation {

Window Window::of(const Values& values) {
    // No design has window registers of more than 16 bits; a wider one counts as its low 16 bits.
    const auto field = [&](size_t i) { return static_cast<uint32_t>(values[i] & 0xFFFF); };
    const auto [width, height, x, y] = std::array{field(0), field(1), field(2), field(3)};
    return {
        x * kPixelsPerClock, y, {(width + 1) * kPixelsPerClock, height + 1}
    };
}

size_t cutWindow(const Window& window, Frame& frame, const LineOrder& order, const PixelCurve& curve,
                 std::span<uint8_t> target) {
    const PictureSize sensor = frame.size();
    const auto total = static_cast<size_t>(std::min<uint64_t>(window.size.pixels(), target.size()));
    uint32_t y = window.y;
    for (size_t start = 0; start < total; start += window.size.width, ++y) {
        const size_t length = std::min<size_t>(window.size.width, total - start);
        const bool isOnSensor = y < sensor.height && window.x < sensor.width;
        const size_t visible = isOnSensor ? std::min<size_t>(length, sensor.width - window.x) : 0;
        const std::span line = target.subspan(start, length);
        if (visible > 0) order.copy(frame.line(y), window.x, line.first(visible));
        std::fill(line.begin() + static_cast<ptrdiff_t>(visible), line.end(), uint8_t{0});
        curve.apply(line);  // while the line is still in the cache
    }
    return total;
}

}  // namespace simulation
