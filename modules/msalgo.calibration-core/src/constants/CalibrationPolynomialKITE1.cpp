#include "constants/PolynomialText.h"
#include "utilities/ParentMass.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationPolynomialKITE1.h>

#include <cmath>

// A polynomial in time that was calibrated with one parent mass and is carried over to another: with rho = parent mass
// / calibration parent mass, times scale by sqrt(rho), so coefficient i by rho^(1 - i / 2), and the calibrated range of
// times by sqrt(rho). Without one of the two masses rho is 1: the law is that of the calibration.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

CalibrationPolynomialKITE1::CalibrationPolynomialKITE1(Numbers numbers) : m_numbers(std::move(numbers)) {
    adapt();
}

std::shared_ptr<ICloneable> CalibrationPolynomialKITE1::Clone() const {
    return std::make_shared<CalibrationPolynomialKITE1>(*this);
}

void CalibrationPolynomialKITE1::SetParentMass(double mass) {
    m_numbers.parentMass = mass;
    adapt();
}

/// rho; 1 where one of the masses is none.
double CalibrationPolynomialKITE1::massRatio() const {
    return Utilities::isParentMass(m_numbers.parentMass) && Utilities::isParentMass(m_numbers.calibrationParentMass)
               ? m_numbers.parentMass / m_numbers.calibrationParentMass
               : 1.0;
}

void CalibrationPolynomialKITE1::adapt() {
    const double rho = massRatio();
    m_coefficients = m_numbers.coefficients;
    // Always from the calibrated ones, so that no rounding adds up over parent masses.
    for (std::size_t i = 0; i < m_coefficients.size(); ++i)
        m_coefficients[i] = m_numbers.coefficients[i] * std::pow(rho, 1.0 - static_cast<double>(i) * 0.5);
}

ICalibrationPolynomial::Range CalibrationPolynomialKITE1::GetArgRange() const {
    // Times grow with the root of the mass.
    const double root = std::sqrt(massRatio());
    return {m_numbers.calibTimeRange.first * root, m_numbers.calibTimeRange.second * root};
}

bool CalibrationPolynomialKITE1::IsEqual(const ICalibrationPolynomial& other) const {
    const auto* const same = dynamic_cast<const CalibrationPolynomialKITE1*>(&other);
    if (same == nullptr)
        return false;
    const Numbers& a = m_numbers;
    const Numbers& b = same->m_numbers;
    return relativelyEqual({a.parentMass, a.correctionTime, a.kiteTime, a.calibrationParentMass, a.calibTimeRange.first,
                            a.calibTimeRange.second},
                           {b.parentMass, b.correctionTime, b.kiteTime, b.calibrationParentMass, b.calibTimeRange.first,
                            b.calibTimeRange.second}) &&
           a.indexRange == b.indexRange && a.ignoreIndexBounds == b.ignoreIndexBounds &&
           relativelyEqual(a.coefficients, b.coefficients);
}

void CalibrationPolynomialKITE1::Dump(std::ostream& sink) const {
    const Numbers& n = m_numbers;
    sink << "CalibrationPolynomialKITE1[ \n"
         << "\t\tCalibration parent mass = " << n.calibrationParentMass << "\n\t\tparent mass = " << n.parentMass
         << "\n\t\tPolynomial coefficients[";
    writeList(sink, n.coefficients);
    sink << "]\n\t\tKITE coefficients[";
    writeList(sink, m_coefficients);
    sink << "], kite time = " << n.kiteTime << ", correction time  = " << n.correctionTime << ", calib time range = ["
         << n.calibTimeRange.first << ", " << n.calibTimeRange.second << "]\n\t\tidx range = [" << n.indexRange.first
         << ", " << n.indexRange.second << "] ignore? " << n.ignoreIndexBounds << "\n\t]\n";
}

}  // namespace kvan::calibration::Constants
