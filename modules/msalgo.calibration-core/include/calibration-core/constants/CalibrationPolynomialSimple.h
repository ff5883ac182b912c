#pragma once

#include <iosfwd>
#include <utility>
#include <vector>

namespace kvan::calibration::Constants {

/// A polynomial for one parent mass, with the range of its argument; nothing is bounded where argLow < argHigh does not
/// hold. Coefficients in ascending order of power; none at all means 0.0 everywhere.
struct CalibrationPolynomialSimple {
    std::vector<double> coefficients{};
    double argLow = 0.0;
    double argHigh = 0.0;
    double parentMass = 0.0;

    bool IsBounded() const { return argLow < argHigh; }

    /// The same for the parent mass `mass`. Times scale with the root of a mass at fixed potentials: coefficient i
    /// takes the factor v * u^i with u = sqrt(parentMass / mass) and v = sqrt(mass / parentMass), the range the factor
    /// v. A polynomial of or for a mass that is not above 1e-12 stays as it is.
    CalibrationPolynomialSimple ScaledTo(double mass) const;

    /// Whether `other` has the same numbers, but for rounding.
    bool IsEqual(const CalibrationPolynomialSimple& other) const;

    /// For logging only.
    void Dump(std::ostream& sink) const;
};

}  // namespace kvan::calibration::Constants

namespace kvan::calibration {

/// As the factory takes it.
using CCalibPolynomial = Constants::CalibrationPolynomialSimple;

}  // namespace kvan::calibration
