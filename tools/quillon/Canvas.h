#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Picture.h"

namespace quillon::tool {

/// Gray paper to draw on, white at first; what lies beyond its edges is lost.
class Canvas {
public:
    Canvas(uint32_t width, uint32_t height);

    void plot(int x, int y, std::byte gray);
    void fill(int x, int y, int width, int height, std::byte gray);
    /// Writes black letters, the upper left corner of the first one at \p x, \p y.
    void write(int x, int y, std::string_view text);
    /// Puts a picture on the paper, \p divisor times smaller; pixels are left out, not mixed.
    void paste(int x, int y, const Picture& picture, int divisor);

    [[nodiscard]] std::vector<std::byte> takePixels() { return std::move(mPixels); }

    /// Height of a line of letters, and width of a text, in pixels.
    static int textHeight();
    static int textWidth(std::string_view text);

private:
    int mWidth;
    int mHeight;
    std::vector<std::byte> mPixels;
};

}  // namespace quillon::tool
