/// \file
/// Types that a host shares with the applet and with the two runtime libraries.
#pragma once

#include <stdint.h>

/// Marks a function that a shared library of this system exports.
#define FABRIX_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
/// Gives an enumeration of the interface the width of an int, whatever value a host passes.
#define FABRIX_ENUM_OF_INT : int
extern "C" {
#else
#define FABRIX_ENUM_OF_INT
#endif

#ifdef __cplusplus
class Fg_Master;
class ShadingMaster;
#else
typedef struct Fg_Master Fg_Master;
typedef struct ShadingMaster ShadingMaster;
#endif

/// Board device handle; issued by the hardware-access library, opaque here.
typedef struct FgDevice FgDevice;
/// Loaded design; issued by the applet runtime library, opaque here.
typedef struct fpga_design fpga_design;
/// The host's acquisition buffers; issued by the hardware-access library, opaque here.
typedef struct dma_mem dma_mem;
/// State of one buffer; filled by the hardware-access library, opaque here.
typedef struct fx_buf_status fx_buf_status;

/// Picture number (from 1) or picture count.
typedef int32_t frameindex_t;

/// The host's grabber handle. The applet reads `Master` only; the host stores the result of Std_entry there.
typedef struct Fg_Struct_s {
    Fg_Master* Master;
} Fg_Struct;

/// Tag that tells the type of the value behind an untyped pointer.
/// Reads ignore it: the parameter itself decides what is written (see applet.h).
enum FgParamTypes FABRIX_ENUM_OF_INT {
    FG_PARAM_TYPE_INVALID = 0,
    FG_PARAM_TYPE_INT32_T = 1,
    FG_PARAM_TYPE_UINT32_T = 2,
    FG_PARAM_TYPE_INT64_T = 3,
    FG_PARAM_TYPE_UINT64_T = 4,
    FG_PARAM_TYPE_DOUBLE = 5,
    FG_PARAM_TYPE_CHAR_PTR = 6,
    FG_PARAM_TYPE_SIZE_T = 7,
    FG_PARAM_TYPE_STRUCT_FIELDPARAMACCESS = 4096,
    FG_PARAM_TYPE_STRUCT_FIELDPARAMINT = 4098,
    FG_PARAM_TYPE_STRUCT_FIELDPARAMDOUBLE = 4101,
    FG_PARAM_TYPE_COMPLEX_DATATYPE = 8192,
    FG_PARAM_TYPE_AUTO = -1
};

/// Questions of the information query `Info`.
enum AppletInfos FABRIX_ENUM_OF_INT {
    GET_ISCAM_COLOR = 848,
    GET_IS_SMART_APPLET = 1040,
    GET_PNG_ICON = 1041,
    GET_EMBEDDED_HAP = 1042,
    GET_HAP_ID = 1043,
    GET_BITSTREAM_ID = 1044,
    GET_IS_ADVANCED_ACQUISITION_APPLET = 1045,
    GET_NR_OF_PORTS = 1792,
    GET_NR_OF_CAMS = 1872,
    GET_NR_OF_DMAS = 1888,
    GET_VERSION = 2048,
    GET_HAP_NAME = 2160,
    GET_BOARD_TYPE = 2176,
    GET_PX_TYPE = 2192,
    GET_IS_CUSTOM = 2560,
    GET_IS_AREA = 2816,
    GET_IS_MEDIUM = 3072,
    GET_IS_FULL = 3328,
    GET_INFO_DESCRIPTION = 4096,
    GET_INFO_CATEGORY = 4112,
    GET_INFO_TAGS = 4128,
    GET_INFO_DEVICE_HANDLE = 4144,
    GET_INFO_DESIGN_HANDLE = 4160,
    GET_INFO_FRIENDLY_NAME = 4176,
    GET_INFO_VERSIONSTRING = 4192,
    GET_INFO_VERSIONSTRING_DETAIL = 4208,
    GET_INFO_RESOLVE_ENUM = 4352,
    GET_INFO_NR_OF_PROCESSES = 4608,
    GET_INFO_NR_OF_PROCESS_CHANNELS = 4624,
    GET_INFO_NR_OF_PROCESS_CAMERAS = 4640,
    GET_INFO_PROCESS_CHANNEL_DMA = 4656,
    GET_INFO_PROCESS_CAMERA_PORT = 4672,
    GET_INFO_DMA_DIRECTION = 4688,
    GET_INFO_DMA_DATATYPE = 4704
};

#ifdef __cplusplus
}
#endif
