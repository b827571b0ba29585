#include "HistogramSheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Canvas.h"
#include "Histogram.h"

namespace quillon::tool {

namespace {

constexpr int kMargin = 20;
constexpr uint32_t kMostPixels = 1024;  ///< width and height of the picture on the sheet
constexpr int kBarWidth = 2;
constexpr int kPlotWidth = 256 * kBarWidth;
constexpr int kPlotHeight = 200;
constexpr int kTickLength = 6;
constexpr int kLineHeight = 24;
constexpr std::byte kInk{0};
constexpr std::byte kGrid{215};
constexpr std::array kTicks{0, 64, 128, 192, 255};

void drawBars(Canvas& canvas, const Histogram& histogram, int top) {
    const int bottom = top + kPlotHeight;
    for (const int tick : kTicks) {
        const int x = kMargin + tick * kBarWidth;
        const std::string label = fmt::format("{}", tick);
        canvas.fill(x, top, 1, kPlotHeight, kGrid);
        canvas.fill(x, bottom, 1, kTickLength, kInk);
        canvas.write(std::max(x - Canvas::textWidth(label) / 2, 0), bottom + 2 * kTickLength, label);
    }
    const auto most = static_cast<double>(*std::max_element(histogram.counts.begin(), histogram.counts.end()));
    for (int value = 0; value < 256; ++value) {
        const auto count = static_cast<double>(histogram.counts[static_cast<size_t>(value)]);
        // A value that occurs at all is seen.
        const int height = most == 0 ? 0 : static_cast<int>(std::ceil(count / most * kPlotHeight));
        canvas.fill(kMargin + value * kBarWidth, bottom - height, kBarWidth, height, kInk);
    }
    canvas.fill(kMargin, bottom, kPlotWidth, 1, kInk);
}

}  // namespace

HistogramSheet::HistogramSheet(const Picture& picture) {
    const uint32_t longest = std::max(picture.width, picture.height);
    const auto divisor = static_cast<int>((longest + kMostPixels - 1) / kMostPixels);
    const int shownWidth = static_cast<int>(picture.width) / divisor;
    const int shownHeight = static_cast<int>(picture.height) / divisor;
    const int plotTop = shownHeight + 2 * kMargin + 2 * kLineHeight;
    mWidth = static_cast<uint32_t>(std::max(shownWidth, kPlotWidth) + 2 * kMargin);
    mHeight = static_cast<uint32_t>(plotTop + kPlotHeight + 2 * kLineHeight);
    const Histogram histogram(picture.pixels);
    Canvas canvas(mWidth, mHeight);
    canvas.paste(kMargin, kMargin, picture, divisor);
    canvas.write(kMargin, shownHeight + 2 * kMargin,
                 fmt::format("{} x {} pixels   {} to {}", picture.width, picture.height, histogram.darkest(),
                             histogram.brightest()));
    canvas.write(kMargin, shownHeight + 2 * kMargin + kLineHeight,
                 fmt::format("mean {:.1f}   at 255: {:.2f} percent", histogram.mean(), histogram.saturated() * 100));
    drawBars(canvas, histogram, plotTop + kLineHeight / 2);
    mPixels = canvas.takePixels();
}

}  // namespace quillon::tool
