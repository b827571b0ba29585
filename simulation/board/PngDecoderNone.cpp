// Stands in for PngDecoder.cpp in a build without the PNG library.
#include "simulation/board/PngDecoder.h"

namespace simulation {

std::optional<Picture> decodePng(std::span<const uint8_t> /*file*/, std::string& why) {
    why = "this build reads no PNG pictures; use PGM pictures";
    return std::nullopt;
}

}  // namespace simulation
