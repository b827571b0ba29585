#include "StandardApplets/grabber_basis/RSFx4/KneeCurve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double kSmallestGamma = 1e-8;
constexpr int kFullScale = 65536;  // one past the largest 16-bit code
constexpr int kCodeBits = 16;
constexpr int kNarrowBits = 8;
constexpr size_t kLastPoint = kKneePoints - 1;

/// \return the bits of a component in an output format
int outputBits(int format) {
    switch (format) {
        case 1:  // 16-bit gray
        case 6:  // 48-bit colour
            return 16;
        case 4:
        case 5:
            return 10;
        default:
            return 8;
    }
}

int codeOf(double value, size_t point, int shift) {
    const bool isLast = point == kLastPoint;
    if (std::isnan(value)) return isLast ? -1 : 0;
    const int limit = kFullScale >> shift;
    const int largest = (kFullScale - 1) >> shift;
    // A clipped value is at most 1.0, so the cast is safe.
    const int code = static_cast<int>(std::trunc(std::ldexp(value * kFullScale, -shift) + 0.5));
    if (code < limit) return code;
    return isLast ? limit : largest;
}

}  // namespace

void processKneeCurve(std::span<double> curve, const KneeProcessing& processing) {
    const double exponent = 1.0 / (processing.gamma == 0.0 ? kSmallestGamma : processing.gamma);
    for (double& value : curve) {
        value = (value * processing.componentGain + processing.offset) * processing.gain;
        if (exponent != 1.0) value = std::pow(value, exponent);  // the first power is the value itself
    }
    if (processing.invert) std::reverse(curve.begin(), curve.end());
    for (double& value : curve) {
        if (value > 1.0) value = 1.0;
        if (value < 0.0) value = 0.0;
    }
}

int kneeShift(int pixelDepth, int format) {
    if (pixelDepth > kNarrowBits) return kCodeBits - std::min(pixelDepth, kCodeBits);
    return outputBits(format) - kNarrowBits;
}

KneeCodes quantiseKneeCurve(std::span<const double, kKneePoints> curve, int shift) {
    KneeCodes codes;
    for (size_t i = 0; i < kKneePoints; ++i) codes[i] = codeOf(curve[i], i, shift);
    return codes;
}

KneeCodes identityKneeCodes() {
    KneeCodes codes;
    std::iota(codes.begin(), codes.end(), 0);
    return codes;
}
