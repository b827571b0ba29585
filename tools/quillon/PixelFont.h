#pragma once

#include <array>
#include <cstdint>

namespace quillon::tool {

/// Letters of 5 x 7 pixels.
constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 7;

/// Lines of a letter from the top; bit 4 is the leftmost pixel.
using Glyph = std::array<uint8_t, kGlyphHeight>;

/// \param letter a capital or small letter (both look the same), a digit, or one of . , - + = ( ) :
/// \return its pixels; none for any other character
Glyph glyphOf(char letter);

}  // namespace quillon::tool
