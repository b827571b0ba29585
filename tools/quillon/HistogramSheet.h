#pragma once

#include <vector>

#include "Picture.h"

namespace quillon::tool {

/// A picture, made smaller where it is large, with its histogram below.
class HistogramSheet {
public:
    explicit HistogramSheet(const Picture& picture);

    /// \return the sheet, valid as long as this
    [[nodiscard]] Picture picture() const { return {mWidth, mHeight, mPixels}; }

private:
    uint32_t mWidth = 0;
    uint32_t mHeight = 0;
    std::vector<std::byte> mPixels;
};

}  // namespace quillon::tool
