#pragma once

#include "legacycalibration/serialization/CalibBlobAccess.h"
#include "serialization/ICalibSerialization.h"

#include <calibration-core/constants/CalibrationPolynomialKITE1.h>
#include <calibration-core/constants/CalibrationPolynomialKITE2.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFactory.h>

namespace kvan::calibration {

/// The blobs of KITE 1: the block of the time axis inside, the numbers of the polynomial, its coefficients.
struct Kite1StoredForm {
    static std::uint16_t Type(BlobForm form);
    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialKITE1& polynomial,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
    static std::shared_ptr<ICalibrationTransformator> Read(tqclegacy::CALIBRATION::CalibBlobReadAccess& access,
                                                           const ICalibrationTransformatorFactory& factory);
};

/// The blobs of KITE 2: the block of the time axis inside, the numbers of the polynomial, the global polynomial, the
/// parent polynomials one behind the other, the VC0 coefficients. The interpolation mode has no place: it is 0. Of
/// another mode the polynomial for the parent mass is written as the only one, which is the same law.
struct Kite2StoredForm {
    static std::uint16_t Type(BlobForm form);
    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialKITE2& polynomial,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access);
    static std::shared_ptr<ICalibrationTransformator> Read(tqclegacy::CALIBRATION::CalibBlobReadAccess& access,
                                                           const ICalibrationTransformatorFactory& factory);
};

}  // namespace kvan::calibration
