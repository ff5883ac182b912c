#pragma once

#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "serialization/CalibrationTextForm.h"
#include "serialization/ICalibSerialization.h"

#include <calibration-core/constants/CalibrationPolynomialPSDFAST.h>

namespace kvan::calibration {

/// The blobs of PSD: the block of the transformator inside, the numbers of the polynomial, its two sets of coefficients
/// and a third one, which is carried. Without a polynomial the mode is 0.
struct PsdStoredForm {
    static std::uint16_t Type(BlobForm form);
    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialPSDFAST* polynomial,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
    static std::shared_ptr<ICalibrationTransformator> Read(tqclegacy::CALIBRATION::CalibBlobReadAccess& access,
                                                           const ICalibrationTransformatorFactory& factory);
};

/// The texts of PSD, strategy 6. There is none without a polynomial.
struct PsdTextForm {
    static constexpr int Strategy = 6;

    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialPSDFAST* polynomial,
                      CalibrationTextWriter& writer);
    /// From the prefix on. Throws `std::runtime_error` in the words of docs/calibration-text.md.
    static CalibrationTextForm::TransformatorPtr Read(CalibrationTextReader& reader,
                                                      const ICalibrationTransformatorFactory& factory);
};

}  // namespace kvan::calibration
