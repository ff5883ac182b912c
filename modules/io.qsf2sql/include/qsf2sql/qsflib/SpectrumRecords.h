#pragma once

#include <qsf2sql/qsflib/ResourceRecords.h>

namespace KVAN::io::QSF {

/// Element codes of scan vectors.
enum ElementType : std::uint8_t {
    ELEMENT_UNKNOWN = 0,
    ELEMENT_INT32 = 5,
    ELEMENT_UINT32 = 6,
    ELEMENT_INT64 = 7,
    ELEMENT_FLOAT32 = 9,
    ELEMENT_FLOAT64 = 10,
};

/// Which element types a line block uses: for the indices, and for all other fields.
enum LineLayout : std::uint32_t {
    LINES_FLOAT_FLOAT = 1,
    LINES_DOUBLE_DOUBLE = 2,
    LINES_DOUBLE_FLOAT = 3,
};

#pragma pack(push, 1)

/// Head of a scan block; the vector follows at once.
struct ScanSpectrumHeader {
    RESOURCE_HEADER resource;   //  0  RESTYPE_SCAN_SPECTRUM
    std::uint8_t unread8[12];   //  8
    std::uint8_t plainType;     // 20  element code of a plain vector
    std::uint8_t unread21;      // 21  bytes of one element; tolerated whatever it says
    std::uint8_t packedType;    // 22  element code of the vector before compression
    std::uint8_t unread23;      // 23
    std::uint32_t count;        // 24  plain: elements; packed: bytes
    std::uint8_t unread28[16];  // 28
};
KVAN_PACKED_RECORD(ScanSpectrumHeader, 44, (resource, 0), (plainType, 20), (packedType, 22), (count, 24));

/// Head of a line block; an ExtendedLineHeader follows at once.
struct LineSpectrumHeader {
    RESOURCE_HEADER resource;   //  0  RESTYPE_LINE_SPECTRUM
    std::uint8_t unread8[12];   //  8
    std::uint32_t layout;       // 20  LineLayout
    std::uint32_t count;        // 24  lines, the length of every field
    std::uint8_t unread28[24];  // 28
};
KVAN_PACKED_RECORD(LineSpectrumHeader, 52, (resource, 0), (layout, 20), (count, 24));

/// Where the fields of a line block lie.
template <class TValue>
struct ExtendedLineHeader {
    std::uint8_t unread0[4];       //  0
    std::uint32_t fieldOffset[6];  //  4  of the fields 16 to 21, from this header's first byte; 0: no such field
    std::uint8_t unread28[8];      // 28
    TValue value = TValue(-1);     // 36  not used by this system
};
KVAN_PACKED_RECORD(ExtendedLineHeader<float>, 40, (fieldOffset, 4), (value, 36));
KVAN_PACKED_RECORD(ExtendedLineHeader<double>, 44, (fieldOffset, 4), (value, 36));

#pragma pack(pop)

}  // namespace KVAN::io::QSF
