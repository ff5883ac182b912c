#pragma once

#include <binaryio/packed_record.h>

#include <cstdint>

/// The blocks of a calibration blob as they lie in the bytes: little-endian, packed.
namespace kvan::tqclegacy::CALIBRATION {

#pragma pack(push, 1)

/// Begins every blob; the block of that type follows at once.
struct CalibBlobHead {
    std::uint16_t type;    // 0
    std::uint16_t hasGpx;  // 2  1: correction data follow the block
};
KVAN_PACKED_RECORD(CalibBlobHead, 4, (type, 0), (hasGpx, 2));

struct TOFCalibrationBlock {
    static constexpr std::uint16_t Type = 1;

    double timeDelay;  //  0
    double timeBase;   //  8
    double c0;         // 16
    double c1;         // 24
    double c2;         // 32
};
KVAN_PACKED_RECORD(TOFCalibrationBlock, 40, (timeDelay, 0), (timeBase, 8), (c0, 16), (c1, 24), (c2, 32));

/// `MeasurementModeInfo` of a reference calibration.
struct CalibKey {
    std::uint8_t acquisitionMode;  // 0
    std::uint8_t polarity;         // 1
    std::uint8_t msLevel;          // 2
    std::uint8_t scanMode;         // 3
};
KVAN_PACKED_RECORD(CalibKey, 4, (acquisitionMode, 0), (polarity, 1), (msLevel, 2), (scanMode, 3));

template <class Block, std::uint16_t BlobType>
struct GenericCalibRef {
    static constexpr std::uint16_t Type = BlobType;

    Block block;   // 0
    CalibKey key;  // after it
};

using TOFCalibrationRefBlock = GenericCalibRef<TOFCalibrationBlock, 4>;
KVAN_PACKED_RECORD(TOFCalibrationRefBlock, 44, (block, 0), (key, 40));

struct TOFCORRCalibrationBlock {
    static constexpr std::uint16_t Type = 3;

    TOFCalibrationBlock tof;        //  0
    std::int32_t compensationCode;  // 40
    double correctionFactor;        // 44
};
KVAN_PACKED_RECORD(TOFCORRCalibrationBlock, 52, (tof, 0), (compensationCode, 40), (correctionFactor, 44));

struct TOFCORRCalibrationRefBlock {
    static constexpr std::uint16_t Type = 2;

    TOFCalibrationBlock tof;        //  0
    std::int32_t compensationCode;  // 40
    CalibKey key;                   // 44
    double referenceTemperature;    // 48
    double correctionFactor;        // 56
};
KVAN_PACKED_RECORD(TOFCORRCalibrationRefBlock, 64, (tof, 0), (compensationCode, 40), (key, 44),
                   (referenceTemperature, 48), (correctionFactor, 56));

struct TOF2CalibrationBlock {
    static constexpr std::uint16_t Type = 9;

    double timeDelay;  //  0
    double timeBase;   //  8
    double c0;         // 16
    double c1;         // 24
    double c2;         // 32
    double c3;         // 40
    double c4;         // 48
};
KVAN_PACKED_RECORD(TOF2CalibrationBlock, 56, (timeDelay, 0), (timeBase, 8), (c0, 16), (c1, 24), (c2, 32), (c3, 40),
                   (c4, 48));

using TOF2CalibrationRefBlock = GenericCalibRef<TOF2CalibrationBlock, 11>;
KVAN_PACKED_RECORD(TOF2CalibrationRefBlock, 60, (block, 0), (key, 56));

/// The offsets of this and the following arrays of doubles count from the start of the block; a count of 0 needs none.
struct Tof2TempCorrCalibrationBlock {
    static constexpr std::uint16_t Type = 10;

    TOF2CalibrationBlock tof2;      //  0
    std::int32_t compensationCode;  // 56
    std::uint32_t factorsOffset;    // 60
    std::uint32_t factorsCount;     // 64
};
KVAN_PACKED_RECORD(Tof2TempCorrCalibrationBlock, 68, (tof2, 0), (compensationCode, 56), (factorsOffset, 60),
                   (factorsCount, 64));

struct Tof2TempCorrCalibrationRefBlock {
    static constexpr std::uint16_t Type = 12;

    TOF2CalibrationBlock tof2;         //  0
    CalibKey key;                      // 56
    std::uint8_t unread60[4];          // 60
    std::int32_t compensationCode;     // 64
    std::uint32_t temperaturesOffset;  // 68
    std::uint32_t factorsOffset;       // 72
    std::uint16_t temperaturesCount;   // 76
    std::uint16_t factorsCount;        // 78
};
KVAN_PACKED_RECORD(Tof2TempCorrCalibrationRefBlock, 80, (tof2, 0), (key, 56), (compensationCode, 64),
                   (temperaturesOffset, 68), (factorsOffset, 72), (temperaturesCount, 76), (factorsCount, 78));

struct FTMSCalibrationBlock {
    static constexpr std::uint16_t Type = 257;

    std::int32_t calibMode;      //  0  0 to 6
    double alpha;                //  4  0.0 in modes 0 and 4
    double beta;                 // 12
    double freqHigh;             // 20
    std::int32_t quadraticFlag;  // 28  0 in modes 0 and 4
    std::int32_t ftmsRawMode;    // 32
    std::int32_t size;           // 36
    double freqLow;              // 40
    double freqWidth;            // 48
};
KVAN_PACKED_RECORD(FTMSCalibrationBlock, 56, (calibMode, 0), (alpha, 4), (beta, 12), (freqHigh, 20),
                   (quadraticFlag, 28), (ftmsRawMode, 32), (size, 36), (freqLow, 40), (freqWidth, 48));

struct IonTrapCalibrationBlock {
    static constexpr std::uint16_t Type = 4097;

    double c0;                      //  0
    double c1;                      //  8
    double c2;                      // 16
    double measurementsPerRawMass;  // 24
    double beginRawMass;            // 32
};
KVAN_PACKED_RECORD(IonTrapCalibrationBlock, 40, (c0, 0), (c1, 8), (c2, 16), (measurementsPerRawMass, 24),
                   (beginRawMass, 32));

struct LINEARCalibrationBlock {
    static constexpr std::uint16_t Type = 4098;

    double c0;  // 0
    double c1;  // 8
};
KVAN_PACKED_RECORD(LINEARCalibrationBlock, 16, (c0, 0), (c1, 8));

/// Post-source decay. The three arrays of doubles count from the start of the block.
struct PSDCalibrationBlock {
    static constexpr std::uint16_t Type = 6;

    TOFCalibrationBlock tof;      //   0
    double uRefFull;              //  40
    double uSegment;              //  48
    double calibrationMass;       //  56
    double parentMass;            //  64
    std::int32_t minArg;          //  72
    std::int32_t maxArg;          //  76
    std::int32_t psdMode;         //  80  1 classic, 2 fast
    std::uint32_t spcOffset;      //  84
    std::uint32_t ocpOffset;      //  88
    std::uint32_t classicOffset;  //  92  kept, not used
    std::uint16_t spcCount;       //  96
    std::uint16_t ocpCount;       //  98
    std::uint16_t classicCount;   // 100
    std::uint8_t unread102[2];    // 102
};
KVAN_PACKED_RECORD(PSDCalibrationBlock, 104, (tof, 0), (uRefFull, 40), (uSegment, 48), (calibrationMass, 56),
                   (parentMass, 64), (minArg, 72), (maxArg, 76), (psdMode, 80), (spcOffset, 84), (ocpOffset, 88),
                   (classicOffset, 92), (spcCount, 96), (ocpCount, 98), (classicCount, 100));

/// KITE 1. The coefficients count from the start of the block.
struct KITE1CalibrationBlock {
    static constexpr std::uint16_t Type = 7;

    TOFCalibrationBlock tof;           //   0
    double parentMass;                 //  40
    double correctionTime;             //  48
    double kiteTime;                   //  56
    double calibrationParentMass;      //  64
    double calibTimeLow;               //  72
    double calibTimeHigh;              //  80
    std::int32_t firstIndex;           //  88
    std::int32_t lastIndex;            //  92
    std::uint8_t ignore;               //  96  not 0: true
    std::uint8_t unread97;             //  97
    std::uint32_t coefficientsOffset;  //  98
    std::uint16_t coefficientsCount;   // 102
};
KVAN_PACKED_RECORD(KITE1CalibrationBlock, 104, (tof, 0), (parentMass, 40), (correctionTime, 48), (kiteTime, 56),
                   (calibrationParentMass, 64), (calibTimeLow, 72), (calibTimeHigh, 80), (firstIndex, 88),
                   (lastIndex, 92), (ignore, 96), (coefficientsOffset, 98), (coefficientsCount, 102));

/// KITE 2. All offsets count from the start of the block; the parent polynomials follow one another.
struct KITE2CalibrationBlock {
    static constexpr std::uint16_t Type = 8;

    TOFCalibrationBlock tof;          //  0
    double parentMass;                // 40
    double referenceTime;             // 48
    double measuredParentMass;        // 56
    double measuredReferenceTime;     // 64
    std::int32_t firstIndex;          // 72
    std::int32_t lastIndex;           // 76
    std::uint8_t ignoreIndexBounds;   // 80  not 0: true
    std::uint8_t unread81[3];         // 81
    std::uint16_t parentsCount;       // 84
    std::uint16_t vc0Count;           // 86
    std::uint32_t globalOffset;       // 88
    std::uint32_t firstParentOffset;  // 92
    std::uint32_t vc0Offset;          // 96
};
KVAN_PACKED_RECORD(KITE2CalibrationBlock, 100, (tof, 0), (parentMass, 40), (referenceTime, 48),
                   (measuredParentMass, 56), (measuredReferenceTime, 64), (firstIndex, 72), (lastIndex, 76),
                   (ignoreIndexBounds, 80), (parentsCount, 84), (vc0Count, 86), (globalOffset, 88),
                   (firstParentOffset, 92), (vc0Offset, 96));

/// A polynomial of a KITE 2 block. The next one begins after its coefficients.
struct CalibPolynomialRecord {
    double argLow;                     //  0
    double argHigh;                    //  8
    double parentMass;                 // 16
    std::uint8_t unread24[2];          // 24
    std::uint16_t coefficientsCount;   // 26
    std::uint32_t coefficientsOffset;  // 28  from the start of the record
};
KVAN_PACKED_RECORD(CalibPolynomialRecord, 32, (argLow, 0), (argHigh, 8), (parentMass, 16), (coefficientsCount, 26),
                   (coefficientsOffset, 28));

/// Correction of masses after a block and its arrays.
struct GPXCalibrationHead {
    double c0;                         //  0
    double c2;                         //  8
    double minMass;                    // 16
    double maxMass;                    // 24
    std::uint8_t use;                  // 32  not 0: true
    std::uint8_t unread33;             // 33
    std::uint16_t coefficientsCount;   // 34
    std::uint32_t coefficientsOffset;  // 36  from the start of this head
};
KVAN_PACKED_RECORD(GPXCalibrationHead, 40, (c0, 0), (c2, 8), (minMass, 16), (maxMass, 24), (use, 32),
                   (coefficientsCount, 34), (coefficientsOffset, 36));

constexpr std::uint16_t CALIB_EXTENSION_BLOCK_INFO_MAGIC = 49068;
constexpr std::uint16_t TOF_COR_CALIB_EXTENSION_BLOCK_MAGIC = 53152;
constexpr std::uint16_t TOF_COR_CALIB_REF_EXTENSION_BLOCK_MAGIC = 53153;

/// Announces the extension block that follows at once.
struct CALIB_EXTENSION_BLOCK_INFO {
    std::uint16_t magic;        //  0
    std::uint8_t unread2[2];    //  2
    std::uint32_t identifier;   //  4  not looked at
    std::uint32_t argument;     //  8  the compensation mode
    std::uint8_t unread12[12];  // 12
};
KVAN_PACKED_RECORD(CALIB_EXTENSION_BLOCK_INFO, 24, (magic, 0), (identifier, 4), (argument, 8));

/// Of a spectrum's calibration. Array offsets count from the start of the extension block.
struct TofTempCorrCalibrationExtensionBlock {
    std::uint16_t magic;          //  0
    std::uint8_t unread2[2];      //  2
    std::uint32_t wholeSize;      //  4  from this block's start to what follows it
    std::uint8_t unread8[4];      //  8
    std::uint32_t factorsOffset;  // 12
    std::uint16_t factorsCount;   // 16
    std::uint8_t unread18[2];     // 18
};
KVAN_PACKED_RECORD(TofTempCorrCalibrationExtensionBlock, 20, (magic, 0), (wholeSize, 4), (factorsOffset, 12),
                   (factorsCount, 16));

/// Of a reference calibration.
struct TofTempCorrCalibrationRefExtensionBlock {
    std::uint16_t magic;               //  0
    std::uint8_t unread2[2];           //  2
    std::uint32_t wholeSize;           //  4
    std::uint8_t unread8[8];           //  8
    std::uint32_t temperaturesOffset;  // 16
    std::uint32_t factorsOffset;       // 20
    std::uint16_t temperaturesCount;   // 24
    std::uint16_t factorsCount;        // 26
};
KVAN_PACKED_RECORD(TofTempCorrCalibrationRefExtensionBlock, 28, (magic, 0), (wholeSize, 4), (temperaturesOffset, 16),
                   (factorsOffset, 20), (temperaturesCount, 24), (factorsCount, 26));

#pragma pack(pop)

}  // namespace kvan::tqclegacy::CALIBRATION
