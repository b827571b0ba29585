#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillon::tool {

/// Compresses \p bytes into a zlib stream that any reader of the format takes, and appends it to \p stream. It codes
/// runs of one byte and gives frequent bytes short codes, without a search for matches: that suits the differences of
/// neighbouring pixels and takes a fraction of the time of a general compressor. A block that would save less than an
/// eighth is stored as it is.
void deflateFast(std::span<const uint8_t> bytes, std::vector<std::byte>& stream);

}  // namespace quillon::tool
