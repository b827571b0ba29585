#include "simulation/support/Files.h"

#include <fstream>

namespace simulation {

namespace fs = std::filesystem;

std::optional<std::vector<uint8_t>> readFile(const fs::path& path, uintmax_t largest) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return std::nullopt;
    const uintmax_t size = fs::file_size(path, error);
    if (error || size > largest) return std::nullopt;
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) return std::nullopt;
    return bytes;
}

}  // namespace simulation
