/// \file
/// The parameter information tree that Fg_getParameterInfo returns: a binary interface of fixed layout.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "fabrix/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Kind of a node; tells which member of RegisterInfo::u is in use.
enum REG_FORMAT FABRIX_ENUM_OF_INT {
    REG_FORMAT_GROUP = 0,
    REG_FORMAT_UINT = 1,
    REG_FORMAT_FLOAT = 2,
    REG_FORMAT_ENUM = 3,
    REG_FORMAT_LUT = 4,
    REG_FORMAT_STRING = 5,
    REG_FORMAT_DOUBLE = 6,
    REG_FORMAT_UINTFIELD = 7,
    REG_FORMAT_DOUBLEFIELD = 8,
    REG_FORMAT_UINT64 = 9,
    REG_FORMAT_UINTFIELD64 = 10,
    REG_FORMAT_INT = 11,
    REG_FORMAT_INT64 = 12,
    REG_FORMAT_INTFIELD = 13,
    REG_FORMAT_INTFIELD64 = 14,
    REG_FORMAT_STRINGFIELD = 15,
    REG_FORMAT_ENUMFIELD = 16
};

typedef struct IntReg {
    int32_t from, to, steps, value;
} IntReg;

typedef struct UIntReg {
    uint32_t from, to, steps, value;
} UIntReg;

typedef struct IntReg64 {
    int64_t from, to, steps, value;
} IntReg64;

typedef struct FloatReg {
    float from, to, steps, value;
} FloatReg;

typedef struct DoubleReg {
    double from, to, steps, value;
} DoubleReg;

typedef struct GroupReg {
    int32_t nrOfElements;
    struct RegisterInfo** elements;  ///< `nrOfElements` borrowed nodes
    int32_t autoIndex;               ///< index that the next child receives
} GroupReg;

typedef struct EnumReg {
    int32_t nrOfElements;
    char** enumNames;  ///< display names; made anew by each change of the limits, so a host must not keep them
    int32_t* enumValues;
    int32_t absValue;
    int32_t indexValue;
    char** enumDefName;  ///< symbolic names; an entry may be null
} EnumReg;

typedef struct LutReg {
    int32_t nrOfElements, nrOfBits, id, number;
} LutReg;

typedef struct StringReg {
    char* string;
    char* FileExtension;  ///< file name pattern of a text that names a file, or null
    int32_t strLen;
} StringReg;

typedef struct DoubleFieldReg {
    double from, to;
    int32_t nrOfElements, index;
    double value;
} DoubleFieldReg;

typedef struct IntFieldReg {
    int32_t from, to, nrOfElements, index, value;
} IntFieldReg;

typedef struct UIntFieldReg {
    uint32_t from, to;
    int32_t nrOfElements, index;
    uint32_t value;
} UIntFieldReg;

typedef struct Int64FieldReg {
    int64_t from, to;
    int32_t nrOfElements, index;
    int64_t value;
} Int64FieldReg;

/// One node of the tree. All texts belong to the tree. The `value` members are never filled.
typedef struct RegisterInfo {
    enum REG_FORMAT format;
    int32_t index;            ///< position in the parent group's elements
    char* name;               ///< group name, or the parameter's display name
    char* parameterName;      ///< the parameter's FG_ name; null for groups
    int32_t accessFlags;      ///< 1 readable, 2 writable, 4 also while an acquisition runs
    int32_t rangeFlags;       ///< attribute of the parameter, not interpreted here
    int32_t visibilityFlags;  ///< attribute of the parameter, not interpreted here
    int32_t id;               ///< parameter identifier
    union {
        IntReg iReg;
        UIntReg uiReg;
        IntReg64 iReg64;
        FloatReg fReg;
        DoubleReg dReg;
        GroupReg gReg;
        EnumReg eReg;
        LutReg lReg;
        StringReg sReg;
        DoubleFieldReg dfReg;
        IntFieldReg ifReg;
        UIntFieldReg uifReg;
        Int64FieldReg if64Reg;
    } u;
    struct RegisterInfo* next;      ///< next top-level group of the port; null elsewhere
    struct RegisterInfo* previous;  ///< previous top-level group of the port; null elsewhere
    int32_t depth;                  ///< groups: 0 at the top level, parent's depth + 1 below
    char* parentName;               ///< groups below another group: the parent's name; null otherwise
    char* unit;                     ///< unit label, or null
    int32_t port;                   ///< camera port of the tree
} RegisterInfo;

#ifdef __cplusplus
}

// The layout that 32-bit hosts read. A 64-bit build keeps the same members with natural alignment.
namespace fabrix::layout {
constexpr bool kIs32Bit = sizeof(void*) == 4;
constexpr bool at(size_t offset, size_t expected) { return !kIs32Bit || offset == expected; }
static_assert(at(sizeof(RegisterInfo), 88));
static_assert(at(offsetof(RegisterInfo, format), 0) && at(offsetof(RegisterInfo, index), 4));
static_assert(at(offsetof(RegisterInfo, name), 8) && at(offsetof(RegisterInfo, parameterName), 12));
static_assert(at(offsetof(RegisterInfo, accessFlags), 16) && at(offsetof(RegisterInfo, rangeFlags), 20));
static_assert(at(offsetof(RegisterInfo, visibilityFlags), 24) && at(offsetof(RegisterInfo, id), 28));
static_assert(at(offsetof(RegisterInfo, u), 32) && at(sizeof(RegisterInfo::u), 32));
static_assert(at(offsetof(RegisterInfo, next), 64) && at(offsetof(RegisterInfo, previous), 68));
static_assert(at(offsetof(RegisterInfo, depth), 72) && at(offsetof(RegisterInfo, parentName), 76));
static_assert(at(offsetof(RegisterInfo, unit), 80) && at(offsetof(RegisterInfo, port), 84));
static_assert(at(offsetof(IntReg64, to), 8) && at(offsetof(IntReg64, steps), 16) && at(offsetof(IntReg64, value), 24));
static_assert(at(offsetof(DoubleReg, to), 8) && at(offsetof(DoubleReg, steps), 16) &&
              at(offsetof(DoubleReg, value), 24));
static_assert(at(offsetof(GroupReg, elements), 4) && at(offsetof(GroupReg, autoIndex), 8));
static_assert(at(offsetof(EnumReg, enumNames), 4) && at(offsetof(EnumReg, enumValues), 8));
static_assert(at(offsetof(EnumReg, absValue), 12) && at(offsetof(EnumReg, indexValue), 16));
static_assert(at(offsetof(EnumReg, enumDefName), 20));
static_assert(at(offsetof(StringReg, FileExtension), 4) && at(offsetof(StringReg, strLen), 8));
static_assert(at(offsetof(DoubleFieldReg, nrOfElements), 16) && at(offsetof(DoubleFieldReg, value), 24));
static_assert(at(offsetof(IntFieldReg, nrOfElements), 8) && at(offsetof(IntFieldReg, value), 16));
static_assert(at(offsetof(Int64FieldReg, nrOfElements), 16) && at(offsetof(Int64FieldReg, value), 24));
}  // namespace fabrix::layout
#endif
