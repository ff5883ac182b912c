#pragma once

#include "calibration-core/interfaces/ICalibrationTransformatorFactory.h"
#include "legacycalibration/serialization/CalibrationBlocks.h"

namespace kvan::calibration {

/// Converts between the blocks of a blob and transformators. The calibration mode has no place in these blocks: it is 0
/// in constants made from one.
class CCOConversionUtil {
public:
    using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
    using Factory = ICalibrationTransformatorFactory;

    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOFCalibrationBlock& block,
                                       const Factory& factory);
    /// With the measurement mode of the block.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOFCalibrationRefBlock& block,
                                       const Factory& factory);
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::IonTrapCalibrationBlock& block,
                                       const Factory& factory);
    /// The block has no physical constants: they are the default ones, raw value = index.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::LINEARCalibrationBlock& block,
                                       const Factory& factory);

    // The inverse. All throw `std::invalid_argument` when constants are missing or of another family.

    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOFCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOFCalibrationRefBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::IonTrapCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::LINEARCalibrationBlock& block);

    /// The time axis alone, with the law c0 = 0.0, c1 = 1.0, c2 = 0.0.
    static void MapTOFPhysicalConstants2QSF(const ICalibrationConstantsPhysical* physical,
                                            tqclegacy::CALIBRATION::TOFCalibrationBlock& block);
};

}  // namespace kvan::calibration
