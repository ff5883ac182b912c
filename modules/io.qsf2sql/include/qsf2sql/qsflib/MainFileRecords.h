#pragma once

#include <qsf2sql/qsflib/ResourceRecords.h>

namespace KVAN::io::QSF {

#pragma pack(push, 1)

/// Which compressor the scan vectors of the file use.
struct CompressionInfoHeader {
    RESOURCE_HEADER resource;   //  0  COMPRESSION_INFO
    std::uint16_t entryOffset;  //  8  of the first entry
    std::uint8_t entryCount;    // 10
    std::uint8_t unread11;      // 11
};
KVAN_PACKED_RECORD(CompressionInfoHeader, 12, (resource, 0), (entryOffset, 8), (entryCount, 10));

/// One compressor; its text follows at once and is not used.
struct CompressionInfoEntry {
    std::uint16_t size;       //  0  the next entry starts this many bytes further on
    std::uint16_t textSize;   //  2
    std::uint8_t unread4[4];  //  4
    std::uint8_t guid[16];    //  8  fields of 4, 2 and 2 bytes little-endian, then 8 bytes
};
KVAN_PACKED_RECORD(CompressionInfoEntry, 24, (size, 0), (textSize, 2), (guid, 8));

/// Head of the description of the whole analysis; a pool of blocks follows.
struct AnalysisHeaderRecord {
    RESOURCE_HEADER resource;      //  0  ANALYSIS_HEADER
    std::uint8_t unread8[4];       //  8
    std::uint32_t textOffset;      // 12  of a text that is not used
    std::uint32_t poolOffset;      // 16  0: no pool
    std::uint8_t unread20[4];      // 20
    std::uint16_t textSize;        // 24
    std::uint8_t unread26[6];      // 26
    std::uint32_t timebase;        // 32  microseconds a tick
    std::uint8_t unread36[12];     // 36
    std::uint8_t day;              // 48  UTC, 1 to 31
    std::uint8_t month;            // 49  UTC, 1 to 12
    std::uint16_t year;            // 50  UTC, 1400 to 10000
    std::int16_t timeZoneMinutes;  // 52  added to UTC to give local time
    std::uint16_t milliseconds;    // 54  UTC
    std::uint8_t second;           // 56  UTC
    std::uint8_t minute;           // 57  UTC
    std::uint8_t hour;             // 58  UTC
    std::uint8_t unread59;         // 59
};
KVAN_PACKED_RECORD(AnalysisHeaderRecord, 60, (resource, 0), (textOffset, 12), (poolOffset, 16), (textSize, 24),
                   (timebase, 32), (day, 48), (month, 49), (year, 50), (timeZoneMinutes, 52), (milliseconds, 54),
                   (second, 56), (minute, 57), (hour, 58));

/// Texts and numbers about sample, method and instrument, in the pool of the analysis header.
struct AnalysisDescriptionRecord {
    RESOURCE_HEADER resource;           //  0  RESTYPE_ANALYSIS_DESCRIPTION
    std::uint32_t textOffset[10];       //  8  a text ends where the next one starts
    std::uint8_t unread48[2];           // 48
    std::uint8_t instrumentSourceType;  // 50
    std::uint8_t unread51;              // 51
    std::uint16_t instrumentFamily;     // 52
    std::uint8_t unread54[2];           // 54
    float serialFallback;               // 56  serial number of older files
    std::uint8_t instrumentRevision;    // 60
    std::uint8_t unread61[3];           // 61
};
KVAN_PACKED_RECORD(AnalysisDescriptionRecord, 64, (resource, 0), (textOffset, 8), (instrumentSourceType, 50),
                   (instrumentFamily, 52), (serialFallback, 56), (instrumentRevision, 60));

/// Texts about the instrument; a list of entries, not used, follows.
struct InstrumentInfoRecord {
    RESOURCE_HEADER resource;     //  0  INSTRUMENT_INFO
    std::uint8_t unread8[8];      //  8
    std::uint32_t textOffset[3];  // 16  text A, a text that is not used, text B
    std::uint32_t listOffset;     // 28
    std::uint16_t textSize[3];    // 32
    std::uint16_t listCount;      // 38
};
KVAN_PACKED_RECORD(InstrumentInfoRecord, 40, (resource, 0), (textOffset, 16), (listOffset, 28), (textSize, 32),
                   (listCount, 38));

/// Start of a segment; a pool of variable tables follows.
struct SegmentConditionRecord {
    RESOURCE_HEADER resource;  //  0  RESTYPE_SEGMENT_CONDITION
    std::uint32_t poolOffset;  //  8  0: no pool
    std::uint8_t unread12[4];  // 12
    std::uint32_t segment;     // 16  from 1
};
KVAN_PACKED_RECORD(SegmentConditionRecord, 20, (resource, 0), (poolOffset, 8), (segment, 16));

/// Start of a spectrum; a pool of variable tables follows.
struct SpectrumConditionRecord {
    RESOURCE_HEADER resource;   //  0  RESTYPE_SPECTRUM_CONDITION
    std::uint32_t poolOffset;   //  8  0: no pool
    std::uint32_t segment;      // 12  from 1
    std::uint32_t spectrum;     // 16  from 1, the Id of the spectrum in the cache
    std::uint8_t unread20[20];  // 20
};
KVAN_PACKED_RECORD(SpectrumConditionRecord, 40, (resource, 0), (poolOffset, 8), (segment, 12), (spectrum, 16));

/// Head of a serialised calibration; its bytes follow up to the end of the block.
struct CalibrationBlockHeader {
    RESOURCE_HEADER resource;  //  0  RESTYPE_CALIBRATION
    std::uint8_t unread8[4];   //  8
};
KVAN_PACKED_RECORD(CalibrationBlockHeader, 12, (resource, 0));

#pragma pack(pop)

}  // namespace KVAN::io::QSF
