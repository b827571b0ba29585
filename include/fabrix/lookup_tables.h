/// \file
/// Lookup tables that a host passes to the applet and reads back: a binary interface.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A lookup table of integers.
typedef struct LookupTable_s {
    uint32_t* lut;          ///< nrOfElements entries
    uint32_t id;            ///< table identifier
    uint32_t nrOfElements;  ///< number of entries
    uint32_t format;        ///< table format code, stored as it is
    uint8_t number;         ///< table number, stored as it is
} LookupTable_s;

/// A transfer curve of the knee lookup table: the value of FG_KNEE_LUT. Entry i is the output for the input
/// i / (nrOfElements - 1), both as fractions of full scale: 0.0 is black, 1.0 is full scale.
///
/// The applet copies a curve that is written to it. For a read the host sets `id`, and `value` to its own memory of
/// 1025 doubles, or to null for everything but the values.
typedef struct KneeLookupTable_s {
    double* value;          ///< nrOfElements output values
    double* reserved;       ///< not used
    uint32_t id;            ///< 0 gray or red, 1 green, 2 blue
    uint32_t nrOfElements;  ///< 1025, else a write gives FG_VALUE_OUT_OF_RANGE
    uint32_t format;        ///< stored as it is; 3 in the applet's own curves
    uint8_t number;         ///< stored as it is
} KneeLookupTable_s;

#ifdef __cplusplus
}
#endif
