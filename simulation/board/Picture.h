#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace simulation {

struct PictureSize {
    uint32_t width = 0;
    uint32_t height = 0;

    bool operator==(const PictureSize&) const = default;
    [[nodiscard]] uint64_t pixels() const { return uint64_t{width} * height; }
};

/// A gray picture of 8 bits, lines packed.
struct Picture {
    PictureSize size;
    std::vector<uint8_t> pixels;

    [[nodiscard]] const uint8_t* line(uint32_t y) const { return pixels.data() + size_t{y} * size.width; }
    [[nodiscard]] uint8_t* line(uint32_t y) { return pixels.data() + size_t{y} * size.width; }
};

/// The largest sensor of the simulated camera, and what all its pictures together may take.
constexpr uint32_t kLargestSide = 65536;
constexpr uint64_t kMostPixels = uint64_t{1} << 30;

}  // namespace simulation
