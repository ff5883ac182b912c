#pragma once

#include <calibration-core/constants/CalibrationPolynomialPSDFAST.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::Transformation {

/// The transformator around `tof`, of which it takes a deep copy, with the polynomial if there is one. Throws
/// `std::runtime_error` "PSD InitData(): unexpected error." for numbers that make no law.
std::shared_ptr<ICalibrationTransformator> newPsd(
    const std::shared_ptr<ICalibrationTransformator>& tof,
    const std::shared_ptr<const Constants::CalibrationPolynomialPSDFAST>& polynomial);

}  // namespace kvan::calibration::Transformation
