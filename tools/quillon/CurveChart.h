#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/KneeCurve.h"

namespace quillon::tool {

/// A knee curve: outputs for equally spaced inputs, as fractions of full scale.
struct KneeChart {
    std::vector<double> base;
    host::KneeProcessing processing;
    std::vector<double> result;  ///< what takes effect; as many points as the base curve
};

constexpr uint32_t kChartWidth = 640;
constexpr uint32_t kChartHeight = 660;

/// Draws both curves over labelled axes.
/// \param chart curves of at least two points
/// \return gray pixels, line after line
std::vector<std::byte> drawChart(const KneeChart& chart);

}  // namespace quillon::tool
