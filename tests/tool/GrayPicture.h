#pragma once

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace tooltest {

/// A gray picture, decoded by the tests themselves.
struct GrayPicture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;

    bool operator==(const GrayPicture&) const = default;

    /// \return the part of \p w x \p h pixels at (\p x, \p y); what lies beyond the picture is 0
    GrayPicture crop(uint32_t x, uint32_t y, uint32_t w, uint32_t h) const;
};

/// Keeps the pixels out of test messages.
inline std::ostream& operator<<(std::ostream& stream, const GrayPicture& picture) {
    return stream << picture.width << " x " << picture.height << " picture";
}

/// Reads a gray PNG or a binary PGM of 8 bits a pixel.
/// \throws std::runtime_error for anything else
GrayPicture readPicture(const std::filesystem::path& path);

/// \return the pictures of a folder in name order
std::vector<GrayPicture> readFolder(const std::filesystem::path& folder);

void writePgm(const std::filesystem::path& path, const GrayPicture& picture);

/// A picture in which every pixel differs from its neighbours and every \p seed gives another one.
GrayPicture makeTexture(uint32_t width, uint32_t height, uint32_t seed);

/// Makes a folder of \p count textures, of the seeds from 0 on. \return its path
std::string writeTextures(const std::filesystem::path& folder, uint32_t count, uint32_t width, uint32_t height);

}  // namespace tooltest
