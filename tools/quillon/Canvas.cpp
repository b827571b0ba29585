#include "Canvas.h"

#include "PixelFont.h"

namespace quillon::tool {

namespace {

constexpr int kFontScale = 2;
constexpr int kLetterAdvance = (kGlyphWidth + 1) * kFontScale;
constexpr std::byte kPaper{255};
constexpr std::byte kInk{0};

}  // namespace

Canvas::Canvas(uint32_t width, uint32_t height)
    : mWidth(static_cast<int>(width)), mHeight(static_cast<int>(height)), mPixels(size_t{width} * height, kPaper) {}

void Canvas::plot(int x, int y, std::byte gray) {
    if (x < 0 || y < 0 || x >= mWidth || y >= mHeight) return;
    mPixels[static_cast<size_t>(y) * static_cast<size_t>(mWidth) + static_cast<size_t>(x)] = gray;
}

void Canvas::fill(int x, int y, int width, int height, std::byte gray) {
    for (int row = y; row < y + height; ++row) {
        for (int column = x; column < x + width; ++column) plot(column, row, gray);
    }
}

void Canvas::write(int x, int y, std::string_view text) {
    for (const char letter : text) {
        const Glyph glyph = glyphOf(letter);
        for (int row = 0; row < kGlyphHeight; ++row) {
            for (int column = 0; column < kGlyphWidth; ++column) {
                if ((glyph[static_cast<size_t>(row)] >> (kGlyphWidth - 1 - column) & 1) == 0) continue;
                fill(x + column * kFontScale, y + row * kFontScale, kFontScale, kFontScale, kInk);
            }
        }
        x += kLetterAdvance;
    }
}

void Canvas::paste(int x, int y, const Picture& picture, int divisor) {
    const int width = static_cast<int>(picture.width) / divisor;
    const int height = static_cast<int>(picture.height) / divisor;
    const auto step = static_cast<size_t>(divisor);
    for (int row = 0; row < height; ++row) {
        const auto line = picture.pixels.subspan(static_cast<size_t>(row) * step * picture.width, picture.width);
        for (int column = 0; column < width; ++column) {
            plot(x + column, y + row, line[static_cast<size_t>(column) * step]);
        }
    }
}

int Canvas::textHeight() { return kGlyphHeight * kFontScale; }

int Canvas::textWidth(std::string_view text) { return static_cast<int>(text.size()) * kLetterAdvance; }

}  // namespace quillon::tool
