#pragma once

#include <cstdint>

#include "fabrix/types.h"
#include "host/Grabber.h"

namespace quillon::tool {

/// The size in which pictures arrive, one byte a pixel.
struct PictureWindow {
    uint32_t width = 0;
    uint32_t height = 0;

    [[nodiscard]] uint64_t bytes() const { return uint64_t{width} * height; }
};

/// \throws ToolError when the applet does not deliver 8-bit gray or says no size
PictureWindow readWindow(const host::Grabber& grabber);

/// Refuses buffers that the machine cannot hold, before any of it is taken.
/// \param pictures buffers and other pictures that are in memory at a time
void checkMemory(const PictureWindow& window, frameindex_t pictures);

/// \return camera frames of which the board delivers one, at least 1
uint32_t framesPerPicture(const host::Grabber& grabber);

/// \return the parameter's value, or \p otherwise where the applet has none
int32_t readOr(const host::Grabber& grabber, int id, int32_t otherwise);

}  // namespace quillon::tool
