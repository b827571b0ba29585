/// \file
/// The binary form of a design: little-endian, a 64-byte header, the register table, the user information table,
/// a pool of zero-terminated texts, then filler up to the wanted size.
///
/// Header: magic (8 bytes), then 32-bit fields: version, image size, board type, register count, register table
/// offset, user information count, user information table offset, text pool offset, text pool size, checksum
/// (the low 32 bits of XXH3, 64 bits, seed 0, of the whole image with this field as 0), four reserved fields of 0.
/// Register row, 24 bytes: name (offset in the pool), width, direction, 0 (32 bits each), initial value (64 bits).
/// User information row, 8 bytes: name and value (offsets in the pool).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulation/design/Design.h"

namespace simulation {

/// Number of bytes of the image without filler.
[[nodiscard]] size_t imageSizeOf(const Design& design);

/// The image of \p design, filled up to \p size bytes; \p size is at least imageSizeOf(design).
[[nodiscard]] std::vector<uint8_t> encodeImage(const Design& design, size_t size);

/// Reads an image. A damaged one yields nothing, and \p why says what is wrong with it.
[[nodiscard]] std::optional<Design> parseImage(std::span<const uint8_t> image, std::string& why);

/// What is wrong with the facts of \p design (names, widths, directions, initial values); empty where all is well.
[[nodiscard]] std::string findFault(const Design& design);

}  // namespace simulation
