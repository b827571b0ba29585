#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quillon::tool {

/// How often each gray value occurs.
struct Histogram {
    explicit Histogram(std::span<const std::byte> pixels);

    std::array<uint64_t, 256> counts{};
    uint64_t total = 0;

    [[nodiscard]] int darkest() const;
    [[nodiscard]] int brightest() const;
    [[nodiscard]] double mean() const;
    /// \return the share of pixels of the greatest value, 0 to 1
    [[nodiscard]] double saturated() const;
};

}  // namespace quillon::tool
