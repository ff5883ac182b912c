#pragma once

#include "serialization/CalibrationTextForm.h"

#include <calibration-core/constants/CalibrationPolynomialKITE1.h>
#include <calibration-core/constants/CalibrationPolynomialKITE2.h>

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

/// The texts of KITE 2, strategy 10: the text of the time axis inside, the polynomials, the numbers. The reference time
/// at calibration has no place.
struct Kite2TextForm {
    static constexpr int Strategy = 10;
    static void Write(const ICalibrationTransformator& tof, const Constants::CalibrationPolynomialKITE2& polynomial,
                      CalibrationTextWriter& writer);
    /// As that of KITE 1; `std::invalid_argument` for a polynomial without its prefix.
    static CalibrationTextForm::TransformatorPtr Read(CalibrationTextReader& reader,
                                                      const ICalibrationTransformatorFactory& factory);
};

}  // namespace kvan::calibration
