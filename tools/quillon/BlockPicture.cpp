#include "BlockPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace quillon::tool {

namespace {

/// Samples in each direction that are averaged for a pixel of the terminal.
constexpr uint32_t kMostSamples = 4;
/// Palette of 256 colours: grays from almost black to almost white, between its black and its white.
constexpr int kPaletteBlack = 16;
constexpr int kPaletteWhite = 231;
constexpr int kPaletteGrays = 232;
constexpr int kGrayLevels = 26;

constexpr std::array kEighths{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};

std::string colour(int gray, bool isTrueColour, bool isBackground) {
    const int kind = isBackground ? 48 : 38;
    if (isTrueColour) return fmt::format("\x1b[{};2;{};{};{}m", kind, gray, gray, gray);
    const int level = (gray * (kGrayLevels - 1) + 127) / 255;
    const int inside = kPaletteGrays + level - 1;
    return fmt::format("\x1b[{};5;{}m", kind,
                       level == 0                 ? kPaletteBlack
                       : level == kGrayLevels - 1 ? kPaletteWhite
                                                  : inside);
}

/// A picture in another size.
class Scaled {
public:
    Scaled(const Picture& picture, int columns, int rows) : mPicture(picture) {
        const double scale = std::min(static_cast<double>(columns) / picture.width, 2.0 * rows / picture.height);
        mWidth = std::clamp(static_cast<int>(std::lround(picture.width * scale)), 1, columns);
        mHeight = std::clamp(static_cast<int>(std::lround(picture.height * scale)), 1, 2 * rows);
    }

    [[nodiscard]] int width() const { return mWidth; }
    [[nodiscard]] int height() const { return mHeight; }

    /// \return the mean of the pixels that fall on this one; black below the picture
    [[nodiscard]] int gray(int column, int row) const {
        if (row >= mHeight) return 0;
        const auto [left, right] = range(column, mWidth, mPicture.width);
        const auto [top, bottom] = range(row, mHeight, mPicture.height);
        const uint32_t xStep = std::max(1U, (right - left) / kMostSamples);
        const uint32_t yStep = std::max(1U, (bottom - top) / kMostSamples);
        uint32_t sum = 0;
        uint32_t count = 0;
        for (uint32_t y = top; y < bottom; y += yStep) {
            for (uint32_t x = left; x < right; x += xStep) {
                sum += std::to_integer<uint32_t>(mPicture.pixels[size_t{y} * mPicture.width + x]);
                ++count;
            }
        }
        return static_cast<int>(sum / count);
    }

private:
    static std::pair<uint32_t, uint32_t> range(int index, int count, uint32_t pixels) {
        const auto begin =
            static_cast<uint32_t>(uint64_t{pixels} * static_cast<uint64_t>(index) / static_cast<uint64_t>(count));
        const auto end =
            static_cast<uint32_t>(uint64_t{pixels} * static_cast<uint64_t>(index + 1) / static_cast<uint64_t>(count));
        return {begin, std::max(end, begin + 1)};
    }

    const Picture& mPicture;
    int mWidth = 1;
    int mHeight = 1;
};

}  // namespace

std::string drawBlocks(const Picture& picture, int columns, int rows, bool isTrueColour) {
    const Scaled scaled(picture, columns, rows);
    std::string text;
    for (int row = 0; row < scaled.height(); row += 2) {
        if (row != 0) text += '\n';
        int formerUpper = -1;
        int formerLower = -1;
        for (int column = 0; column < scaled.width(); ++column) {
            const int upper = scaled.gray(column, row);
            const int lower = scaled.gray(column, row + 1);
            if (upper != formerUpper) text += colour(upper, isTrueColour, false);
            if (lower != formerLower) text += colour(lower, isTrueColour, true);
            text += "▀";
            formerUpper = upper;
            formerLower = lower;
        }
    }
    return text;
}

std::string drawBars(const Histogram& histogram, int columns, int rows) {
    const int bars = std::clamp(columns, 1, 256);
    std::array<uint64_t, 256> sums{};
    for (size_t value = 0; value < histogram.counts.size(); ++value) {
        sums[value * static_cast<size_t>(bars) / 256] += histogram.counts[value];
    }
    const uint64_t most = std::max<uint64_t>(*std::max_element(sums.begin(), sums.end()), 1);
    std::string text;
    for (int row = rows - 1; row >= 0; --row) {
        for (int bar = 0; bar < bars; ++bar) {
            const double height =
                static_cast<double>(sums[static_cast<size_t>(bar)]) / static_cast<double>(most) * 8 * rows;
            const int eighths = std::clamp(static_cast<int>(std::ceil(height)) - 8 * row, 0, 8);
            text += kEighths[static_cast<size_t>(eighths)];
        }
        if (row != 0) text += '\n';
    }
    return text;
}

}  // namespace quillon::tool
