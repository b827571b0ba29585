#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillon::tool {

/// A gray picture of 8 bits a pixel, line after line.
struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::span<const std::byte> pixels;  ///< width times height bytes, borrowed
};

}  // namespace quillon::tool
