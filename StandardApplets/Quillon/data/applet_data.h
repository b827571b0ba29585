#pragma once

#include <cstddef>

#include "StandardApplets/Quillon/data/design_identifier.h"

/// The embedded design image; only the applet runtime library knows what it means.
extern const unsigned char rawHapData[];
extern const size_t rawHapDataSize;

/// The applet's icon: a PNG picture of 32 x 32 pixels, 8-bit RGBA.
extern const unsigned char appletIconData[];
extern const size_t appletIconSize;
