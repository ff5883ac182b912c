#pragma once

#include <calibration-core/constants/CalibrationPolynomialKITE1.h>
#include <calibration-core/constants/CalibrationPolynomialKITE2.h>
#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::Transformation {

/// The transformator of the polynomial on the axis of `tof`, of which it takes a deep copy. Throws `std::runtime_error`
/// "Kite1 InitData(): unexpected error." for numbers that make no law.
std::shared_ptr<ICalibrationTransformator> newKite1(const std::shared_ptr<ICalibrationTransformator>& tof,
                                                    const Constants::CalibrationPolynomialKITE1& polynomial);

/// The same of the second generation. Throws what `Kite2Law` throws.
std::shared_ptr<ICalibrationTransformator> newKite2(const std::shared_ptr<ICalibrationTransformator>& tof,
                                                    const Constants::CalibrationPolynomialKITE2& polynomial);

}  // namespace kvan::calibration::Transformation
