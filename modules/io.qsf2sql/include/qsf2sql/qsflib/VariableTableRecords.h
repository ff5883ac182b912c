#pragma once

#include <qsf2sql/qsflib/ResourceRecords.h>

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

/// Head of a table of values that hold for all acquisition keys; the entries follow at an offset.
struct _VAR_TAB_HEADER {
    RESOURCE_HEADER resource;   //  0
    std::uint32_t entryOffset;  //  8  of the first entry
    std::uint32_t entryCount;   // 12
};
static_assert(sizeof(_VAR_TAB_HEADER) == 16 && offsetof(_VAR_TAB_HEADER, entryCount) == 12);
using _STRING_TAB_HEADER = _VAR_TAB_HEADER;
using _TYPED_VAR_TAB_HEADER = _VAR_TAB_HEADER;

/// The same for one acquisition key.
struct _VAR_TAB_HEADER_EXTENDED {
    RESOURCE_HEADER resource;      //  0
    std::uint32_t entryOffset;     //  8
    std::uint32_t entryCount;      // 12
    std::uint8_t polarity;         // 16
    std::uint8_t acquisitionMode;  // 17
    std::uint8_t msLevel;          // 18
    std::uint8_t scanMode;         // 19
};
static_assert(sizeof(_VAR_TAB_HEADER_EXTENDED) == 20 && offsetof(_VAR_TAB_HEADER_EXTENDED, polarity) == 16);
using _STRING_TAB_HEADER_EXTENDED = _VAR_TAB_HEADER_EXTENDED;
using _TYPED_VAR_TAB_HEADER_EXTENDED = _VAR_TAB_HEADER_EXTENDED;

/// Entry of a table of scalar numbers; the next one follows at once.
struct VarTabValueEntry {
    std::uint16_t variable;  //  0  index of the variable
    std::uint8_t value[8];   //  2  an integer in the first 4 bytes, or a double: as the variable is declared
};
static_assert(sizeof(VarTabValueEntry) == 10 && offsetof(VarTabValueEntry, value) == 2);

/// Head of an entry of the other tables; its data follow.
struct VarTabEntryHead {
    std::uint16_t size;       //  0  the next entry starts this many bytes further on
    std::uint16_t variable;   //  2  index of the variable
    std::uint16_t count;      //  4  bytes of a text, or elements of a vector
    std::uint8_t unread6[2];  //  6
};
static_assert(sizeof(VarTabEntryHead) == 8 && offsetof(VarTabEntryHead, count) == 4);

/// Parameters of MS/MS, in the pool of a spectrum condition; 32-bit words at an offset. Not used.
struct MSMSParameterHeader {
    RESOURCE_HEADER resource;  //  0  RESTYPE_MSMS_PARAMETER
    std::uint32_t wordOffset;  //  8
    std::uint32_t wordCount;   // 12
};
static_assert(sizeof(MSMSParameterHeader) == 16 && offsetof(MSMSParameterHeader, wordCount) == 12);

#pragma pack(pop)

}  // namespace KVAN::io::QSF
