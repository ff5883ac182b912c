#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The blocks of a calibration blob as they lie in the bytes: little-endian, packed.
namespace kvan::tqclegacy::CALIBRATION {

#pragma pack(push, 1)

/// Begins every blob; the block of that type follows at once.
struct CalibBlobHead {
    std::uint16_t type;    // 0
    std::uint16_t hasGpx;  // 2  1: correction data behind the block
};
static_assert(sizeof(CalibBlobHead) == 4 && offsetof(CalibBlobHead, hasGpx) == 2);

struct TOFCalibrationBlock {
    static constexpr std::uint16_t Type = 1;

    double timeDelay;  //  0
    double timeBase;   //  8
    double c0;         // 16
    double c1;         // 24
    double c2;         // 32
};
static_assert(sizeof(TOFCalibrationBlock) == 40 && offsetof(TOFCalibrationBlock, c0) == 16);

/// `MeasurementModeInfo` of a reference calibration.
struct CalibKey {
    std::uint8_t acquisitionMode;  // 0
    std::uint8_t polarity;         // 1
    std::uint8_t msLevel;          // 2
    std::uint8_t scanMode;         // 3
};
static_assert(sizeof(CalibKey) == 4);

template <class Block, std::uint16_t BlobType>
struct GenericCalibRef {
    static constexpr std::uint16_t Type = BlobType;

    Block block;   // 0
    CalibKey key;  // behind it
};

using TOFCalibrationRefBlock = GenericCalibRef<TOFCalibrationBlock, 4>;
static_assert(sizeof(TOFCalibrationRefBlock) == 44 && offsetof(TOFCalibrationRefBlock, key) == 40);

struct TOFCORRCalibrationBlock {
    static constexpr std::uint16_t Type = 3;

    TOFCalibrationBlock tof;        //  0
    std::int32_t compensationCode;  // 40
    double correctionFactor;        // 44
};
static_assert(sizeof(TOFCORRCalibrationBlock) == 52 && offsetof(TOFCORRCalibrationBlock, correctionFactor) == 44);

struct TOFCORRCalibrationRefBlock {
    static constexpr std::uint16_t Type = 2;

    TOFCalibrationBlock tof;        //  0
    std::int32_t compensationCode;  // 40
    CalibKey key;                   // 44
    double referenceTemperature;    // 48
    double correctionFactor;        // 56
};
static_assert(sizeof(TOFCORRCalibrationRefBlock) == 64 && offsetof(TOFCORRCalibrationRefBlock, key) == 44);

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
static_assert(sizeof(TOF2CalibrationBlock) == 56 && offsetof(TOF2CalibrationBlock, c4) == 48);

using TOF2CalibrationRefBlock = GenericCalibRef<TOF2CalibrationBlock, 11>;
static_assert(sizeof(TOF2CalibrationRefBlock) == 60 && offsetof(TOF2CalibrationRefBlock, key) == 56);

/// The offsets of this and the following arrays of doubles count from the start of the block; a count of 0 needs none.
struct Tof2TempCorrCalibrationBlock {
    static constexpr std::uint16_t Type = 10;

    TOF2CalibrationBlock tof2;      //  0
    std::int32_t compensationCode;  // 56
    std::uint32_t factorsOffset;    // 60
    std::uint32_t factorsCount;     // 64
};
static_assert(sizeof(Tof2TempCorrCalibrationBlock) == 68 &&
              offsetof(Tof2TempCorrCalibrationBlock, factorsOffset) == 60);

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
static_assert(sizeof(Tof2TempCorrCalibrationRefBlock) == 80 &&
              offsetof(Tof2TempCorrCalibrationRefBlock, compensationCode) == 64);

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
static_assert(sizeof(FTMSCalibrationBlock) == 56 && offsetof(FTMSCalibrationBlock, quadraticFlag) == 28);

struct IonTrapCalibrationBlock {
    static constexpr std::uint16_t Type = 4097;

    double c0;                      //  0
    double c1;                      //  8
    double c2;                      // 16
    double measurementsPerRawMass;  // 24
    double beginRawMass;            // 32
};
static_assert(sizeof(IonTrapCalibrationBlock) == 40 && offsetof(IonTrapCalibrationBlock, measurementsPerRawMass) == 24);

struct LINEARCalibrationBlock {
    static constexpr std::uint16_t Type = 4098;

    double c0;  // 0
    double c1;  // 8
};
static_assert(sizeof(LINEARCalibrationBlock) == 16 && offsetof(LINEARCalibrationBlock, c1) == 8);

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
static_assert(sizeof(PSDCalibrationBlock) == 104 && offsetof(PSDCalibrationBlock, psdMode) == 80 &&
              offsetof(PSDCalibrationBlock, spcCount) == 96);

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
static_assert(sizeof(KITE1CalibrationBlock) == 104 && offsetof(KITE1CalibrationBlock, ignore) == 96 &&
              offsetof(KITE1CalibrationBlock, coefficientsOffset) == 98);

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
static_assert(sizeof(KITE2CalibrationBlock) == 100 && offsetof(KITE2CalibrationBlock, parentsCount) == 84 &&
              offsetof(KITE2CalibrationBlock, globalOffset) == 88);

/// A polynomial of a KITE 2 block. The next one begins behind its coefficients.
struct CalibPolynomialRecord {
    double argLow;                     //  0
    double argHigh;                    //  8
    double parentMass;                 // 16
    std::uint8_t unread24[2];          // 24
    std::uint16_t coefficientsCount;   // 26
    std::uint32_t coefficientsOffset;  // 28  from the start of the record
};
static_assert(sizeof(CalibPolynomialRecord) == 32 && offsetof(CalibPolynomialRecord, coefficientsCount) == 26);

/// Correction of masses behind a block and its arrays.
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
static_assert(sizeof(GPXCalibrationHead) == 40 && offsetof(GPXCalibrationHead, use) == 32 &&
              offsetof(GPXCalibrationHead, coefficientsOffset) == 36);

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
static_assert(sizeof(CALIB_EXTENSION_BLOCK_INFO) == 24 && offsetof(CALIB_EXTENSION_BLOCK_INFO, argument) == 8);

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
static_assert(sizeof(TofTempCorrCalibrationExtensionBlock) == 20 &&
              offsetof(TofTempCorrCalibrationExtensionBlock, factorsOffset) == 12);

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
static_assert(sizeof(TofTempCorrCalibrationRefExtensionBlock) == 28 &&
              offsetof(TofTempCorrCalibrationRefExtensionBlock, temperaturesOffset) == 16);

#pragma pack(pop)

}  // namespace kvan::tqclegacy::CALIBRATION
