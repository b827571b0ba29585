/// \file
/// The signals that may drive the camera control lines CC1 to CC4 of a Camera Link camera.
#pragma once

#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Source of a camera control line: the value of FG_CCSEL0 to FG_CCSEL3. FG_CCSEL is an array of four, CC1 first.
enum CCsel FABRIX_ENUM_OF_INT {
    CC_EXSYNC = 0,  ///< trigger of the camera's exposure
    CC_PRESCALER = 1,
    CC_HDSYNC = 1,
    CC_EXSYNC2 = 1,  ///< second form of the trigger
    CC_STROBEPULSE = 2,
    CC_CLK = 3,
    CC_GND = 4,         ///< constantly low
    CC_VCC = 5,         ///< constantly high
    CC_NOT_EXSYNC = 6,  ///< inverted, as are the following
    CC_NOT_PRESCALER = 7,
    CC_NOT_HDSYNC = 7,
    CC_NOT_EXSYNC2 = 7,
    CC_NOT_STROBEPULSE = 8
};

#ifdef __cplusplus
}
#endif
