#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

#include <utility>
#include <vector>

namespace kvan::calibration::Utilities {

/// The interval of mass around `m0` on which raw = polynomial(sqrt(mass + shift)) increases strictly, coefficients in
/// ascending order. Throws `std::runtime_error` "Mass->time mapping not defined for specified value of 'm0'" when
/// m0 + shift is negative, and what `math::monotonicPolyRange` throws.
std::pair<double, double> monotonicPolyShiftedSqrtRange(const std::vector<double>& polynomial, double m0, double shift);

/// c0, sqrt(C1), c2, c3 of a time-of-flight law as a polynomial in t = sqrt(mass + shift).
struct TofPolynomial {
    /// Of TOF1 or TOF2 constants; `std::invalid_argument` for others.
    explicit TofPolynomial(const ICalibrationConstantsFunctional& constants);

    /// Up to the power `degree`.
    std::vector<double> coefficients(std::size_t degree) const;

    double c0, b, c2, c3, shift;
};

}  // namespace kvan::calibration::Utilities
