/// \file
/// The arithmetic of the knee lookup table: from a base curve of fractions to the codes that the FPGA takes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Segments of a curve in the FPGA; segment i runs from support point i to point i + 1.
constexpr size_t kKneeSegments = 1024;
constexpr size_t kKneePoints = kKneeSegments + 1;

/// The format code of the applet's own curves.
constexpr uint32_t kKneeFormat = 3;

/// The quantised support points of one table.
using KneeCodes = std::array<int, kKneePoints>;

/// What is applied to a base curve, in this order.
struct KneeProcessing {
    double componentGain = 1.0;  ///< of one colour component
    double offset = 0.0;         ///< fraction of full scale
    double gain = 1.0;
    double gamma = 1.0;   ///< exponent 1 / gamma; 0 counts as 1e-8
    bool invert = false;  ///< mirrors the input axis
};

/// Processes a curve in place and clips it to 0 to 1; what is not a number stays so.
void processKneeCurve(std::span<double> curve, const KneeProcessing& processing);

/// \return how many bits the codes are narrower than 16; \p pixelDepth in bits, \p format an entry of FG_FORMAT
[[nodiscard]] int kneeShift(int pixelDepth, int format);

/// \return the codes of a processed curve: 0 to the largest code, and at the last point up to one more, so that the
///         last segment ends at full scale. What is not a number becomes 0, and -1 at the last point.
[[nodiscard]] KneeCodes quantiseKneeCurve(std::span<const double, kKneePoints> curve, int shift);

/// \return the codes of a table before the first calculation: entry i is i
[[nodiscard]] KneeCodes identityKneeCodes();
