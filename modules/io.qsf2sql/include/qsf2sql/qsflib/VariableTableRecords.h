#pragma once

#include "qsf2sql/qsflib/ResourceRecords.h"

namespace KVAN::io::QSF {

#pragma pack(push, 1)

/// Head of the declarations of all variables; the entries follow at an offset.
struct VarTabDescHeader {
    RESOURCE_HEADER resource;   //  0  RESTYPE_VAR_TAB_DESCRIPTION
    std::uint16_t entryOffset;  //  8  of the first entry
    std::uint16_t entryCount;   // 10
};
static_assert(sizeof(VarTabDescHeader) == 12 && offsetof(VarTabDescHeader, entryCount) == 10);

/// One declared variable; its texts follow.
struct VarTabDescEntryRecord {
    std::uint16_t size;           //  0  the next entry starts this many bytes further on
    std::uint16_t variable;       //  2  index of the variable
    std::uint16_t elementType;    //  4  5 integer, 10 double, 11 string
    std::uint16_t isVector;       //  6  1 for a vector
    std::uint16_t textOffset[6];  //  8  name, group, display name, value text, format, dimension; a text ends where the
                                  //     next one starts
};
static_assert(sizeof(VarTabDescEntryRecord) == 20 && offsetof(VarTabDescEntryRecord, textOffset) == 8);

#pragma pack(pop)

}  // namespace KVAN::io::QSF
