#pragma once

#include <cstddef>

namespace quillon::tool {

/// How output looks: plain in a pipe or a file.
struct OutputStyle {
    bool hasColour = false;
    size_t width = 0;  ///< columns of the terminal; 0: lines may be of any length
};

/// \return what standard output takes: colour on a terminal unless NO_COLOR is set or TERM is dumb, and its width,
/// where
///         COLUMNS goes first
OutputStyle outputStyle();

}  // namespace quillon::tool
