#include "host/KneeCurve.h"

#include <algorithm>
#include <cmath>

namespace quillon::host {

namespace {

constexpr uint32_t kFewestPoints = 2;
constexpr uint32_t kMostPoints = 1U << 20;
/// Stands for a gamma of 0, by which nothing can be divided.
constexpr double kSmallestGamma = 1e-8;

int readTable(const Grabber& grabber, KneeLookupTable_s& table, int port) {
    return grabber.functions().getParameter(grabber.handle(), FG_KNEE_LUT, &table, port, FG_PARAM_TYPE_AUTO);
}

double onBoard(double value) { return std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0); }

}  // namespace

int readKneeCurve(const Grabber& grabber, std::vector<double>& points, int port) {
    KneeLookupTable_s table{};
    if (const int result = readTable(grabber, table, port); result < 0) return result;
    if (table.nrOfElements < kFewestPoints || table.nrOfElements > kMostPoints) return FG_VALUE_OUT_OF_RANGE;
    points.resize(table.nrOfElements);
    table.value = points.data();
    return readTable(grabber, table, port);
}

int readKneeProcessing(const Grabber& grabber, KneeProcessing& processing, int port) {
    int32_t inverted = 0;
    int result = grabber.read(FG_KNEE_LUT_OFFSET, processing.offset, port);
    if (result >= 0) result = grabber.read(FG_KNEE_LUT_SCALE, processing.gain, port);
    if (result >= 0) result = grabber.read(FG_KNEE_LUT_GAMMA, processing.gamma, port);
    if (result >= 0) result = grabber.read(FG_KNEE_LUT_INVERT, inverted, port);
    processing.isInverted = inverted != 0;
    return result;
}

std::vector<double> processCurve(std::vector<double> points, const KneeProcessing& processing) {
    const double exponent = 1.0 / (processing.gamma == 0.0 ? kSmallestGamma : processing.gamma);
    for (double& value : points) value = std::pow((value + processing.offset) * processing.gain, exponent);
    if (processing.isInverted) std::reverse(points.begin(), points.end());
    for (double& value : points) value = onBoard(value);
    return points;
}

}  // namespace quillon::host
