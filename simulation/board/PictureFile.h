#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "simulation/board/Picture.h"

namespace simulation {

/// Whether the file's name says that it is a PNG or PGM picture.
[[nodiscard]] bool isPictureFile(const std::filesystem::path& path);

/// Reads a PNG picture (gray; colours become their brightness, transparency is dropped, 16 bits become 8) or a
/// binary PGM picture with maximum 255. On a refusal nothing is returned and \p why names the file and the reason.
[[nodiscard]] std::optional<Picture> readPictureFile(const std::filesystem::path& path, std::string& why);

}  // namespace simulation
