#pragma once

#include <cstdint>
#include <string_view>

#include "simulation/board/LineOrder.h"

namespace simulation {

/// How a sensor with several taps is read out.
///
/// The diagram shows one sensor line from left to right in segments of equal width. The digits of a segment are its
/// taps: they read neighbouring pixels, in the order in which they stand, and then move on together, to the right (">")
/// or to the left ("<"). In every clock the camera sends one pixel of each tap, tap 1 first. A dash is the one tap of a
/// sensor that has no others.
struct ReadoutGeometry {
    int number;
    std::string_view name;
    std::string_view diagram;
};

/// A sensor is a whole number of 16 pixels wide, unless its pixels come as they lie.
constexpr uint32_t kReadoutStep = 16;

/// The geometry of a sensor whose pixels come as they lie.
[[nodiscard]] const ReadoutGeometry& unchangedGeometry();

/// \return null where there is no such geometry.
[[nodiscard]] const ReadoutGeometry* findGeometry(int number);

/// \param text a name, or a number in decimal digits. \return null where there is no such geometry.
[[nodiscard]] const ReadoutGeometry* findGeometry(std::string_view text);

/// The order in which a sensor line of \p width pixels leaves the camera: natural where the width is not a multiple of
/// kReadoutStep.
[[nodiscard]] LineOrder deliveryOrder(const ReadoutGeometry& geometry, uint32_t width);

}  // namespace simulation
