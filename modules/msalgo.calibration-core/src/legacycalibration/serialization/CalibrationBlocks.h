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

#pragma pack(pop)

}  // namespace kvan::tqclegacy::CALIBRATION
