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
static_assert(sizeof(CompressionInfoHeader) == 12 && offsetof(CompressionInfoHeader, entryCount) == 10);

/// One compressor; its text follows at once and is not used.
struct CompressionInfoEntry {
    std::uint16_t size;       //  0  the next entry starts this many bytes further on
    std::uint16_t textSize;   //  2
    std::uint8_t unread4[4];  //  4
    std::uint8_t guid[16];    //  8  fields of 4, 2 and 2 bytes little-endian, then 8 bytes
};
static_assert(sizeof(CompressionInfoEntry) == 24 && offsetof(CompressionInfoEntry, guid) == 8);

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
static_assert(sizeof(AnalysisHeaderRecord) == 60 && offsetof(AnalysisHeaderRecord, timebase) == 32 &&
              offsetof(AnalysisHeaderRecord, day) == 48 && offsetof(AnalysisHeaderRecord, second) == 56);

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
static_assert(sizeof(AnalysisDescriptionRecord) == 64 && offsetof(AnalysisDescriptionRecord, instrumentFamily) == 52 &&
              offsetof(AnalysisDescriptionRecord, serialFallback) == 56);

/// Texts about the instrument; a list of entries, not used, lies behind.
struct InstrumentInfoRecord {
    RESOURCE_HEADER resource;     //  0  INSTRUMENT_INFO
    std::uint8_t unread8[8];      //  8
    std::uint32_t textOffset[3];  // 16  text A, a text that is not used, text B
    std::uint32_t listOffset;     // 28
    std::uint16_t textSize[3];    // 32
    std::uint16_t listCount;      // 38
};
static_assert(sizeof(InstrumentInfoRecord) == 40 && offsetof(InstrumentInfoRecord, textSize) == 32);

/// Start of a segment; a pool of variable tables follows.
struct SegmentConditionRecord {
    RESOURCE_HEADER resource;  //  0  RESTYPE_SEGMENT_CONDITION
    std::uint32_t poolOffset;  //  8  0: no pool
    std::uint8_t unread12[4];  // 12
    std::uint32_t segment;     // 16  from 1
};
static_assert(sizeof(SegmentConditionRecord) == 20 && offsetof(SegmentConditionRecord, segment) == 16);

/// Start of a spectrum; a pool of variable tables follows.
struct SpectrumConditionRecord {
    RESOURCE_HEADER resource;   //  0  RESTYPE_SPECTRUM_CONDITION
    std::uint32_t poolOffset;   //  8  0: no pool
    std::uint32_t segment;      // 12  from 1
    std::uint32_t spectrum;     // 16  from 1, the Id of the spectrum in the cache
    std::uint8_t unread20[20];  // 20
};
static_assert(sizeof(SpectrumConditionRecord) == 40 && offsetof(SpectrumConditionRecord, spectrum) == 16);

/// Head of a serialised calibration; its bytes follow up to the end of the block.
struct CalibrationBlockHeader {
    RESOURCE_HEADER resource;  //  0  RESTYPE_CALIBRATION
    std::uint8_t unread8[4];   //  8
};
static_assert(sizeof(CalibrationBlockHeader) == 12);

#pragma pack(pop)

}  // namespace KVAN::io::QSF
