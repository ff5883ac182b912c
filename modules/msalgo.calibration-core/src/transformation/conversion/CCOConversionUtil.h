#pragma once

#include "legacycalibration/serialization/CalibrationBlocks.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFactory.h>

#include <vector>

namespace kvan::calibration {

/// Converts between the blocks of a blob and transformators. Only FTMS blocks have a place for the calibration mode: it
/// is 0 in constants made from any other.
class CCOConversionUtil {
public:
    using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
    using Factory = ICalibrationTransformatorFactory;
    using Values = std::vector<double>;

    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOFCalibrationBlock& block,
                                       const Factory& factory);
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOF2CalibrationBlock& block,
                                       const Factory& factory);
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::IonTrapCalibrationBlock& block,
                                       const Factory& factory);
    /// The block has no physical constants: they are the default ones, raw value = index.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::LINEARCalibrationBlock& block,
                                       const Factory& factory);
    /// Throws as the factory for modes that it does not support.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::FTMSCalibrationBlock& block,
                                       const Factory& factory);

    // A spectrum's block carries what was measured with it: one value or array that is both its temperatures and its
    // factors.

    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOFCORRCalibrationBlock& block,
                                       const Factory& factory);
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::Tof2TempCorrCalibrationBlock& block,
                                       Values factors, const Factory& factory);

    // Families around a time-of-flight axis.

    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::KITE1CalibrationBlock& block,
                                       const Values& coefficients, const Factory& factory);

    /// The interpolation mode is 0.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::KITE2CalibrationBlock& block,
                                       const CCalibPolynomial& global, const std::vector<CCalibPolynomial>& parents,
                                       const Values& vc0, const Factory& factory);

    static constexpr int ClassicPsdMode = 1;
    static constexpr int FastPsdMode = 2;

    /// Throws `std::invalid_argument` for the classic mode. Any other but the fast one is reported on the standard
    /// output and gives a transformator without a polynomial, which leaves apparent masses as they are.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::PSDCalibrationBlock& block, const Values& spc,
                                       const Values& ocp, const Values& classic, const Factory& factory);

    // Reference blocks: with the measurement mode.

    template <class Block, std::uint16_t Type>
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::GenericCalibRef<Block, Type>& block,
                                       const Factory& factory) {
        return asReference(MapQSF2CCO(block.block, factory), block.key);
    }
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::TOFCORRCalibrationRefBlock& block,
                                       const Factory& factory);
    /// Without temperatures and factors it is the plain law.
    static TransformatorPtr MapQSF2CCO(const tqclegacy::CALIBRATION::Tof2TempCorrCalibrationRefBlock& block,
                                       Values temperatures, Values factors, const Factory& factory);

    // The inverse. All throw `std::invalid_argument` when constants are missing or of another family. Offsets and
    // counts of arrays are the caller's.

    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOFCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOF2CalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::IonTrapCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::LINEARCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::FTMSCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOFCORRCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::TOFCORRCalibrationRefBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::Tof2TempCorrCalibrationBlock& block);
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::Tof2TempCorrCalibrationRefBlock& block);
    template <class Block, std::uint16_t Type>
    static void MapCCO2QSF(const ICalibrationTransformator& transformator,
                           tqclegacy::CALIBRATION::GenericCalibRef<Block, Type>& block) {
        MapCCO2QSF(transformator, block.block);
        block.key = keyOf(transformator);
    }

    /// `tof` is the transformator inside.
    static void MapCCO2QSF(const ICalibrationTransformator& tof,
                           const Constants::CalibrationPolynomialKITE1& polynomial,
                           tqclegacy::CALIBRATION::KITE1CalibrationBlock& block);

    static void MapCCO2QSF(const ICalibrationTransformator& tof,
                           const Constants::CalibrationPolynomialKITE2& polynomial,
                           tqclegacy::CALIBRATION::KITE2CalibrationBlock& block);
    /// Null: no polynomial, mode 0. The ends of the argument range are cut to whole numbers.
    static void MapCCO2QSF(const ICalibrationTransformator& tof,
                           const Constants::CalibrationPolynomialPSDFAST* polynomial,
                           tqclegacy::CALIBRATION::PSDCalibrationBlock& block);

    /// The time axis alone, with the law c0 = 0.0, c1 = 1.0, c2 = 0.0.
    static void MapTOFPhysicalConstants2QSF(const ICalibrationConstantsPhysical* physical,
                                            tqclegacy::CALIBRATION::TOFCalibrationBlock& block);

    /// Total: 0 is mode 2, 1 is mode 1, anything else mode 0.
    static ENUM_TEMPERATURE_COMPENSATION_MODE modeOfCode(std::int32_t compensationCode);
    /// 0 for mode 2, 1 for mode 1, 255 for 0 and 3.
    static std::int32_t codeOfMode(ENUM_TEMPERATURE_COMPENSATION_MODE mode);

private:
    static TransformatorPtr asReference(TransformatorPtr transformator, const tqclegacy::CALIBRATION::CalibKey& key);
    static tqclegacy::CALIBRATION::CalibKey keyOf(const ICalibrationTransformator& transformator);
};

}  // namespace kvan::calibration
