#include "constants/PolynomialText.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationPolynomialPSDFAST.h>

#include <boost/throw_exception.hpp>
#include <cmath>
#include <stdexcept>

// Of a reflector segment at voltage U with calibration coefficients SPC and correction coefficients OCP:
//
//     s = sum(pow(U * 1000, i / 2) * OCP[i]) * 0.001 + U
//     coefficient[i] = pow(parent mass / calibration mass, 1 - i / 2) * s * SPC[i]
//
// SPC and OCP must be equally many. Numbers that make no finite coefficient are refused where the law is built.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

CalibrationPolynomialPSDFAST::CalibrationPolynomialPSDFAST(Numbers numbers) : m_numbers(std::move(numbers)) {
    ComputePolynomialCoefficients();
}

std::shared_ptr<ICloneable> CalibrationPolynomialPSDFAST::Clone() const {
    return std::make_shared<CalibrationPolynomialPSDFAST>(*this);
}

void CalibrationPolynomialPSDFAST::SetParentMass(double mass) {
    m_numbers.parentMass = mass;
    ComputePolynomialCoefficients();
}

void CalibrationPolynomialPSDFAST::ComputePolynomialCoefficients() {
    const Numbers& n = m_numbers;
    if (n.spc.size() != n.ocp.size())
        BOOST_THROW_EXCEPTION(
            std::invalid_argument("CalibrationPolynomialPSDFAST::ComputePolynomialCoefficients: Number of SPC and OCP "
                                  "coefficients differ"));
    double sum = 0.0;
    for (std::size_t i = 0; i < n.ocp.size(); ++i)
        sum += std::pow(n.uSegment * 1000.0, static_cast<double>(i) * 0.5) * n.ocp[i];
    m_coefficients.resize(n.spc.size());
    for (std::size_t i = 0; i < n.spc.size(); ++i)
        m_coefficients[i] = std::pow(n.parentMass / n.calibrationMass, 1.0 - static_cast<double>(i) * 0.5) *
                            (sum * 0.001 + n.uSegment) * n.spc[i];
}

bool CalibrationPolynomialPSDFAST::IsEqual(const ICalibrationPolynomial& other) const {
    const auto* const same = dynamic_cast<const CalibrationPolynomialPSDFAST*>(&other);
    if (same == nullptr)
        return false;
    const Numbers& a = m_numbers;
    const Numbers& b = same->m_numbers;
    return relativelyEqual({a.uRefFull, a.uSegment, a.calibrationMass, a.parentMass, a.minArg, a.maxArg},
                           {b.uRefFull, b.uSegment, b.calibrationMass, b.parentMass, b.minArg, b.maxArg}) &&
           relativelyEqual(a.spc, b.spc) && relativelyEqual(a.ocp, b.ocp);
}

void CalibrationPolynomialPSDFAST::Dump(std::ostream& sink) const {
    const Numbers& n = m_numbers;
    const auto list = [&sink](const char* name, const std::vector<double>& values) {
        sink << name;
        writeList(sink, values);
        sink << "]\n";
    };
    sink << "CalibrationPolynomialPSDFAST[ , parent mass = " << n.parentMass << ", USegment = " << n.uSegment
         << "\n\t\tCalibration mass = " << n.calibrationMass << "\n\t\tURefFull = " << n.uRefFull << '\n';
    list("\t\tSPC coefficients[", n.spc);
    list("\t\tOCP coefficients[", n.ocp);
    list("\t\tPolynomial coefficients[", m_coefficients);
    sink << "\t\tminArg = " << n.minArg << ", maxArg = " << n.maxArg << "\n\t]\n";
}

}  // namespace kvan::calibration::Constants
