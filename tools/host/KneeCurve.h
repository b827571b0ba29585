#pragma once

#include <vector>

#include "host/Grabber.h"

namespace quillon::host {

/// What the applet does to the knee curve before it loads the board's table.
struct KneeProcessing {
    double offset = 0;
    double gain = 1;
    double gamma = 1;
    bool isInverted = false;
};

/// Reads the base curve of a gray camera: outputs for equally spaced inputs, as fractions of full scale.
/// \return the applet's result; FG_VALUE_OUT_OF_RANGE for a curve that is no curve, of fewer than two points or far
///         more than a table can have
[[nodiscard]] int readKneeCurve(const Grabber& grabber, std::vector<double>& points, int port = 0);

/// \return the applet's result
[[nodiscard]] int readKneeProcessing(const Grabber& grabber, KneeProcessing& processing, int port = 0);

/// \return the curve that takes effect: offset, gain, gamma and inversion in this order, then clipped to 0 and 1.
///         What is not a number, such as a root of a negative value, is 0 on the board
std::vector<double> processCurve(std::vector<double> points, const KneeProcessing& processing);

}  // namespace quillon::host
