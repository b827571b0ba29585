/// \file
/// Result codes of the exported functions. 0 or a non-negative number is success. A published value never changes.
#pragma once

/// Success.
static const int FG_OK = 0;
/// Generic failure of an internal operation, or a hook that does not handle the call.
static const int FG_ERROR = -1;
/// The device handle is null, or the hardware-access operation is missing.
static const int FG_NO_DEVICE = -6;
/// The trigger time base is shorter than 15 clock cycles.
static const int FG_TIME_BASE_TOO_SHORT = -50;
/// The software trigger was refused: the block is busy or its queue is full.
static const int FG_SOFTWARE_TRIGGER_BUSY = -60;
/// The port does not exist, or it is port 1 while one camera uses both connectors.
static const int FG_INVALID_PORT = -61;
/// The hardware-access library could not be loaded.
static const int FG_HW_LIBRARY_MISSING = -101;
/// Out of memory, or the caller's buffer is too small.
static const int FG_OUT_OF_RESOURCES = -500;
/// The parameter's type is not supported, or there is no register behind it.
static const int FG_TYPE_NOT_SUPPORTED = -2031;
/// The DMA transfer could not be stopped; it may be tried again.
static const int FG_DMA_STOP_FAILED = -2042;
/// An argument is invalid, or no parameter has this identifier.
static const int FG_INVALID_ARGUMENT = -2070;
/// The test-image generator cannot produce this setting.
static const int FG_GENERATOR_NOT_REALISABLE = -2075;
/// The acquisition has been started already.
static const int FG_ALREADY_STARTED = -2090;
/// The FPGA is not configured.
static const int FG_NOT_CONFIGURED = -2110;
/// The buffer status could not be read.
static const int FG_BUFFER_STATUS_FAILED = -2120;
/// The query or operation is not supported; for limits: the parameter has no numeric limits.
static const int FG_NOT_SUPPORTED = -2130;
/// The present trigger mode does not allow it.
static const int FG_TRIGGER_MODE_MISMATCH = -2140;
/// The acquisition has not been started.
static const int FG_NOT_STARTED = -3010;
/// A configuration or LUT file is missing or was refused.
static const int FG_FILE_REJECTED = -5000;
/// A configuration or LUT file cannot be created, read or written.
static const int FG_FILE_NOT_ACCESSIBLE = -5001;
/// The value lies outside the limits or is not an entry of the enumeration.
static const int FG_VALUE_OUT_OF_RANGE = -6000;
/// The design has no register of this name.
static const int FG_REGISTER_NOT_FOUND = -7040;
/// The value is not a multiple of the step.
static const int FG_NOT_A_STEP = -7080;
/// The parameter cannot change while an acquisition runs.
static const int FG_ACQUISITION_RUNNING = -7090;
/// A configuration file lacks the key.
static const int FG_KEY_MISSING = -8000;
/// The parameter cannot be written (now).
static const int FG_NOT_WRITABLE = -8010;
