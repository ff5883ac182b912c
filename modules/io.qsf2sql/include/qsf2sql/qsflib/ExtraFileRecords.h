#pragma once

#include <qsf2sql/qsflib/ResourceRecords.h>

namespace KVAN::io::QSF {

#pragma pack(push, 1)

/// What a container of the extra file begins with; the quick-info record follows at a distance.
struct QuickInfoHead {
    std::uint8_t unread0[4];     //  0
    std::uint16_t recordOffset;  //  4  of the record, from this head's first byte
    std::uint8_t unread6[6];     //  6
};
KVAN_PACKED_RECORD(QuickInfoHead, 12, (recordOffset, 4));

/// The summary of one spectrum. Masses and calibration bytes follow it, at offsets from the record's first byte.
struct QuickInfoRecord {
    std::uint16_t size;               //  0  of the record, masses and calibration included
    std::uint16_t massOffset;         //  2  of the mass list, `msLevel` 32-bit floats; 0: none
    std::uint16_t calibrationOffset;  //  4  of the calibration bytes, up to the record's end; 0: none
    std::uint8_t unread6[2];          //  6
    std::uint64_t retentionTime;      //  8  in ticks of the timebase
    std::uint8_t unread16[4];         // 16
    std::uint32_t spectrum;           // 20  from 1
    std::uint8_t unread24[4];         // 24
    float acquiredLower;              // 28  fractional data-point index
    float acquiredUpper;              // 32  fractional data-point index
    std::uint8_t unread36[4];         // 36
    float maxIntensity;               // 40
    float sumIntensity;               // 44
    std::uint8_t polarity;            // 48
    std::uint8_t acquisitionMode;     // 49
    std::uint8_t msLevel;             // 50  0 for MS^1, n - 1 for MS^n
    std::uint8_t scanMode;            // 51
    std::uint8_t unread52[4];         // 52
    std::uint8_t calibrationHead[4];  // 56  first bytes of the serialised calibration
};
KVAN_PACKED_RECORD(QuickInfoRecord, 60, (size, 0), (massOffset, 2), (calibrationOffset, 4), (retentionTime, 8),
                   (spectrum, 20), (acquiredLower, 28), (acquiredUpper, 32), (maxIntensity, 40), (sumIntensity, 44),
                   (polarity, 48), (acquisitionMode, 49), (msLevel, 50), (scanMode, 51), (calibrationHead, 56));

#pragma pack(pop)

}  // namespace KVAN::io::QSF
