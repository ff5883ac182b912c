#pragma once

#include "calibration-core/constants/CalibrationPolynomialKITE1.h"
#include "serialization/CalibrationTextForm.h"

namespace kvan::calibration {

/// The texts of KITE 1, strategy 7: the text of the time axis inside, the numbers of the polynomial, its coefficients.
struct Kite1TextForm {
    static constexpr int Strategy = 7;
    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialKITE1& polynomial,
                      CalibrationTextWriter& writer);
    /// From the prefix on. Throws `std::runtime_error` in the words of docs/calibration-text.md.
    static CalibrationTextForm::TransformatorPtr Read(CalibrationTextReader& reader,
                                                      const ICalibrationTransformatorFactory& factory);
};

}  // namespace kvan::calibration
