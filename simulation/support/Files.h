#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace simulation {

/// The bytes of a regular file of at most \p largest bytes; nothing where it cannot be read. Folders, pipes and
/// devices are refused: reading one could block or never end.
[[nodiscard]] std::optional<std::vector<uint8_t>> readFile(const std::filesystem::path& path, uintmax_t largest);

}  // namespace simulation
