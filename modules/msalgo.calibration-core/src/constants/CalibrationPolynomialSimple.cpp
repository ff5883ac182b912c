#include "constants/PolynomialText.h"
#include "utilities/ParentMass.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationPolynomialSimple.h>

#include <cmath>

// A polynomial in the root of mass that was calibrated with one parent mass. For another one, with v = sqrt(mass /
// parent mass) and u = 1 / v, the argument scales by v and the value with it: coefficient i by v * u^i. Masses of zero
// stand for none and scale nothing.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

CalibrationPolynomialSimple CalibrationPolynomialSimple::ScaledTo(double mass) const {
    CalibrationPolynomialSimple scaled = *this;
    // No mass, no scale: the polynomial holds for all of them.
    if (!Utilities::isParentMass(parentMass) || !Utilities::isParentMass(mass))
        return scaled;
    const double u = std::sqrt(parentMass / mass);
    const double v = std::sqrt(mass / parentMass);
    for (std::size_t i = 0; i < scaled.coefficients.size(); ++i)
        scaled.coefficients[i] = v * std::pow(u, static_cast<double>(i)) * coefficients[i];
    scaled.argLow = argLow * v;
    scaled.argHigh = argHigh * v;
    scaled.parentMass = mass;
    return scaled;
}

bool CalibrationPolynomialSimple::IsEqual(const CalibrationPolynomialSimple& other) const {
    return relativelyEqual(coefficients, other.coefficients) && relativelyEqual(argLow, other.argLow) &&
           relativelyEqual(argHigh, other.argHigh) && relativelyEqual(parentMass, other.parentMass);
}

void CalibrationPolynomialSimple::Dump(std::ostream& sink) const {
    sink << "\t\t\tCalibrationPolynomialSimple[ \n"
         << "\t\t\t\tparent mass = " << parentMass << "\n\t\t\t\tArg range = [" << argLow << ", " << argHigh
         << "]\n\t\t\t\tcoefficients = (";
    writeList(sink, coefficients);
    sink << ")\n\t\t\t]\n";
}

}  // namespace kvan::calibration::Constants
