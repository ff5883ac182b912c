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
KVAN_PACKED_RECORD(VarTabDescHeader, 12, (resource, 0), (entryOffset, 8), (entryCount, 10));

/// One declared variable; its texts follow.
struct VarTabDescEntryRecord {
    /// Of the variable, or of each element of a vector. Files may have other numbers: such a variable is not known.
    enum Element : std::uint16_t { Integer = 5, Double = 10, String = 11 };

    std::uint16_t size;           //  0  the next entry starts this many bytes further on
    std::uint16_t variable;       //  2  index of the variable
    std::uint16_t elementType;    //  4  an `Element`
    std::uint16_t isVector;       //  6  1 for a vector
    std::uint16_t textOffset[6];  //  8  name, group, display name, value text, format, dimension; a text ends where the
                                  //     next one starts
};
KVAN_PACKED_RECORD(VarTabDescEntryRecord, 20, (size, 0), (variable, 2), (elementType, 4), (isVector, 6),
                   (textOffset, 8));

/// Head of a table of values that hold for all acquisition keys; the entries follow at an offset.
struct _VAR_TAB_HEADER {
    RESOURCE_HEADER resource;   //  0
    std::uint32_t entryOffset;  //  8  of the first entry
    std::uint32_t entryCount;   // 12
};
KVAN_PACKED_RECORD(_VAR_TAB_HEADER, 16, (resource, 0), (entryOffset, 8), (entryCount, 12));
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
KVAN_PACKED_RECORD(_VAR_TAB_HEADER_EXTENDED, 20, (resource, 0), (entryOffset, 8), (entryCount, 12), (polarity, 16),
                   (acquisitionMode, 17), (msLevel, 18), (scanMode, 19));
using _STRING_TAB_HEADER_EXTENDED = _VAR_TAB_HEADER_EXTENDED;
using _TYPED_VAR_TAB_HEADER_EXTENDED = _VAR_TAB_HEADER_EXTENDED;

/// Entry of a table of scalar numbers; the next one follows at once.
struct VarTabValueEntry {
    std::uint16_t variable;  //  0  index of the variable
    std::uint8_t value[8];   //  2  an integer in the first 4 bytes, or a double: as the variable is declared
};
KVAN_PACKED_RECORD(VarTabValueEntry, 10, (variable, 0), (value, 2));

/// Head of an entry of the other tables; its data follow.
struct VarTabEntryHead {
    std::uint16_t size;       //  0  the next entry starts this many bytes further on
    std::uint16_t variable;   //  2  index of the variable
    std::uint16_t count;      //  4  bytes of a text, or elements of a vector
    std::uint8_t unread6[2];  //  6
};
KVAN_PACKED_RECORD(VarTabEntryHead, 8, (size, 0), (variable, 2), (count, 4));

/// Parameters of MS/MS, in the pool of a spectrum condition; 32-bit words at an offset. Not used.
struct MSMSParameterHeader {
    RESOURCE_HEADER resource;  //  0  RESTYPE_MSMS_PARAMETER
    std::uint32_t wordOffset;  //  8
    std::uint32_t wordCount;   // 12
};
KVAN_PACKED_RECORD(MSMSParameterHeader, 16, (resource, 0), (wordOffset, 8), (wordCount, 12));

#pragma pack(pop)

}  // namespace KVAN::io::QSF
