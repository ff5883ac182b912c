#pragma once

#include <binaryio/packed_record.h>

#include <bit>
#include <cstdint>

/// The heads that all blocks of the native files have in common.

static_assert(std::endian::native == std::endian::little, "the native files are read by copying their bytes");

namespace KVAN::io::QSF {

/// Format version of every block that is verified.
constexpr std::uint16_t g_version = 0xBFA0;

/// Resource types by their names in the format; the roles stand in docs/native-format.md.
enum _RESOURCE_TYPE : std::uint16_t {
    RESTYPE_VAR_TAB_VALUE = 0x0001,
    RESTYPE_VAR_TAB_STRING = 0x0002,
    RESTYPE_MSMS_PARAMETER = 0x0005,
    RESTYPE_CALIBRATION = 0x0006,
    RESTYPE_END_OF_CONDITIONS_8 = 0x0008,
    RESTYPE_END_OF_CONDITIONS_A = 0x000A,
    RESTYPE_VAR_TAB_VALUE_EXTENDED = 0x000D,
    RESTYPE_VAR_TAB_STRING_EXTENDED = 0x000E,
    RESTYPE_VAR_TAB_INT_VECTOR = 0x0011,
    RESTYPE_VAR_TAB_DOUBLE_VECTOR = 0x0012,
    RESTYPE_VAR_TAB_STRING_VECTOR = 0x0013,
    RESTYPE_VAR_TAB_INT_VECTOR_EXTENDED = 0x0021,
    RESTYPE_VAR_TAB_DOUBLE_VECTOR_EXTENDED = 0x0022,
    RESTYPE_VAR_TAB_STRING_VECTOR_EXTENDED = 0x0023,
    INSTRUMENT_INFO = 0x0024,
    RESTYPE_SCAN_SPECTRUM = 0x1001,
    RESTYPE_LINE_SPECTRUM = 0x1002,
    RESTYPE_SEGMENT_CONDITION = 0x2001,
    RESTYPE_SPECTRUM_CONDITION = 0x2002,
    RESTYPE_CONDITION_2003 = 0x2003,
    ANALYSIS_HEADER = 0x3001,
    RESTYPE_VAR_TAB_DESCRIPTION = 0x3002,
    RESTYPE_ANALYSIS_DESCRIPTION = 0x3003,
    RESTYPE_SIDE_FILE_HEAD = 0x4001,
    COMPRESSION_INFO = 0x4003,
    RESTYPE_4004 = 0x4004,
    RESTYPE_CONTAINER = 0x5001,
    RESTYPE_END_OF_FILE = 0x5003,
    RESTYPE_INDEX_HEAD = 0x7001,
    RESTYPE_INDEX_ENTRIES_FOLLOW = 0x7002,
    RESTYPE_EXTRA_HEAD = 0x7003,
    RESTYPE_EXTRA_ENTRIES_FOLLOW = 0x7004,
};

#pragma pack(push, 1)

/// Head of every block but a container.
struct RESOURCE_HEADER {
    std::uint32_t size;     //  0  bytes of the block, this head included
    std::uint16_t type;     //  4  _RESOURCE_TYPE
    std::uint16_t version;  //  6  g_version
};
KVAN_PACKED_RECORD(RESOURCE_HEADER, 8, (size, 0), (type, 4), (version, 6));

/// Head of a container of the side files; the contained entry follows at once.
struct ContainerHeader {
    std::uint32_t unread0;  //  0
    std::uint16_t type;     //  4  RESTYPE_CONTAINER
    std::uint16_t version;  //  6
    std::uint32_t size;     //  8  bytes of the container, this head included
};
KVAN_PACKED_RECORD(ContainerHeader, 12, (type, 4), (version, 6), (size, 8));

/// What a container of the index file holds.
struct FILE_CONTAINER_INDEX_ENTRY {
    std::uint16_t type;          //  0  type of the block in the main file
    std::uint8_t unread2[10];    //  2
    std::uint32_t EntryIndexNo;  // 12  running number of the thing described, from 0
    std::uint64_t offset;        // 16  of the block in the main file
};
KVAN_PACKED_RECORD(FILE_CONTAINER_INDEX_ENTRY, 24, (type, 0), (EntryIndexNo, 12), (offset, 16));

#pragma pack(pop)

}  // namespace KVAN::io::QSF
