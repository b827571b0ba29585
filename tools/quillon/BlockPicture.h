#pragma once

#include <string>

#include "Histogram.h"
#include "Picture.h"

namespace quillon::tool {

/// Draws a picture with half blocks, two pixels in each letter, as large as it fits and in its own proportions.
/// \param columns room of the picture in letters, at least 1, as \p rows
/// \param isTrueColour 24-bit grays; otherwise the 24 grays of a palette of 256 colours
/// \return lines separated by line feeds
std::string drawBlocks(const Picture& picture, int columns, int rows, bool isTrueColour);

/// Draws a histogram with blocks of eighths.
/// \return \p rows lines of at most \p columns letters
std::string drawBars(const Histogram& histogram, int columns, int rows);

}  // namespace quillon::tool
