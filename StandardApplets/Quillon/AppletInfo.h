#pragma once

#include "fabrix/types.h"

/// Remembers the device handle of the most recent Std_entry for GET_INFO_DEVICE_HANDLE.
void setInfoDeviceHandle(FgDevice* device);
/// Remembers the design handle of the most recent Std_entry for GET_INFO_DESIGN_HANDLE.
void setInfoDesignHandle(fpga_design* design);
