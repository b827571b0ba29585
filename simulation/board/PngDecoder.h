#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "simulation/board/Picture.h"

namespace simulation {

/// Decodes a PNG picture to 8-bit gray. On a refusal nothing is returned and \p why gives the reason; a build
/// without PNG support refuses every picture.
[[nodiscard]] std::optional<Picture> decodePng(std::span<const uint8_t> file, std::string& why);

}  // namespace simulation
