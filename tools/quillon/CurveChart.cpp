#include "CurveChart.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "Canvas.h"

namespace quillon::tool {

namespace {

/// The square in which the curves run.
constexpr int kPlotSide = 512;
constexpr int kPlotLeft = 84;
constexpr int kPlotTop = 68;
constexpr int kPlotBottom = kPlotTop + kPlotSide;
constexpr int kTickLength = 6;

constexpr std::byte kGrid{215};
constexpr std::byte kBaseCurve{150};
constexpr std::byte kInk{0};

constexpr std::array<std::string_view, 5> kTickLabels{"0", "0.25", "0.5", "0.75", "1"};

void drawAxes(Canvas& canvas) {
    constexpr int kSteps = static_cast<int>(kTickLabels.size()) - 1;
    for (int i = 0; i <= kSteps; ++i) {
        const int distance = kPlotSide * i / kSteps;
        const std::string_view label = kTickLabels[static_cast<size_t>(i)];
        canvas.fill(kPlotLeft + distance, kPlotTop, 1, kPlotSide, kGrid);
        canvas.fill(kPlotLeft, kPlotBottom - distance, kPlotSide, 1, kGrid);
        canvas.fill(kPlotLeft + distance, kPlotBottom, 1, kTickLength, kInk);
        canvas.fill(kPlotLeft - kTickLength, kPlotBottom - distance, kTickLength, 1, kInk);
        canvas.write(kPlotLeft + distance - Canvas::textWidth(label) / 2, kPlotBottom + 2 * kTickLength, label);
        canvas.write(kPlotLeft - 2 * kTickLength - Canvas::textWidth(label),
                     kPlotBottom - distance - Canvas::textHeight() / 2, label);
    }
    canvas.fill(kPlotLeft, kPlotBottom, kPlotSide + 1, 1, kInk);
    canvas.fill(kPlotLeft, kPlotTop, 1, kPlotSide, kInk);
}

int heightOf(double value) {
    const double inside = std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
    return kPlotBottom - static_cast<int>(std::lround(inside * kPlotSide));
}

void drawCurve(Canvas& canvas, std::span<const double> points, std::byte gray) {
    constexpr int kPen = 2;
    const auto last = static_cast<double>(points.size() - 1);
    int former = heightOf(points.front());
    for (int x = 0; x <= kPlotSide; ++x) {
        const int y = heightOf(points[static_cast<size_t>(std::lround(last * x / kPlotSide))]);
        // Steep parts are closed by a line from one column's height to the next one's.
        canvas.fill(kPlotLeft + x, std::min(former, y) - 1, kPen, std::abs(y - former) + kPen, gray);
        former = y;
    }
}

}  // namespace

std::vector<std::byte> drawChart(const KneeChart& chart) {
    const host::KneeProcessing& processing = chart.processing;
    Canvas canvas(kChartWidth, kChartHeight);
    canvas.write(10, 8,
                 fmt::format("offset {:.5g}  gain {:.5g}  gamma {:.5g}{}", processing.offset, processing.gain,
                             processing.gamma, processing.isInverted ? "  inverted" : ""));
    canvas.write(10, 36, "output (fraction of full scale)");
    drawAxes(canvas);
    drawCurve(canvas, chart.base, kBaseCurve);
    drawCurve(canvas, chart.result, kInk);
    constexpr std::string_view kInputTitle = "input (fraction of full scale)";
    canvas.write(kPlotLeft + (kPlotSide - Canvas::textWidth(kInputTitle)) / 2, kPlotBottom + 34, kInputTitle);
    canvas.write(kPlotLeft, kPlotBottom + 58, "black: in effect   gray: base curve");
    return canvas.takePixels();
}

}  // namespace quillon::tool
