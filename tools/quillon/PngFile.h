#pragma once

#include <cstdio>

#include "Picture.h"

namespace quillon::tool {

/// How much time a PNG file may take.
enum class PngEffort {
    Fast,  ///< keeps up with a camera; a picture that would save less than a quarter is stored as it is
    Small  ///< many times slower
};

/// \return whether the whole picture was written; the reason of a failure is in errno, 0 when there is none
bool writePng(FILE* file, const Picture& picture, PngEffort effort);

}  // namespace quillon::tool
