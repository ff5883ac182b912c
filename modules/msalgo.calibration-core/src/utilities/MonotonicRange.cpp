#include "utilities/MonotonicRange.h"

#include "utilities/CalibrationTOFUtilities.h"

#include <logger/logger.h>
#include <math-base/polynomials.h>

#include <boost/throw_exception.hpp>
#include <cmath>
#include <stdexcept>

// Time of flight rises with mass where its polynomial in t = sqrt(mass + shift) rises with t: the interval around the
// root of m0, cut at t = 0, squared back to masses. The stored numbers are used, not the computation view, except b =
// sqrt(C1), which is the coefficient of t.
namespace kvan::calibration::Utilities {

std::pair<double, double> monotonicPolyShiftedSqrtRange(const std::vector<double>& polynomial, double m0,
                                                        double shift) {
    const auto logger = logging::Logger::getLogger("kvan.calibration_core.monotonicPolySqrtRange");
    const double x = m0 + shift;
    if (x < 0.0)
        BOOST_THROW_EXCEPTION(std::runtime_error("Mass->time mapping not defined for specified value of 'm0'"));
    auto [lower, upper] = math::monotonicPolyRange(polynomial, std::sqrt(x));
    KVAN_LOG(logger, TRACE) << "Calculated monotonic x range is: [" << lower << ", " << upper << "]";
    // t is a root: what lies below 0 is no mass.
    if (lower < 0.0)
        lower = 0.0;
    const std::pair<double, double> masses{std::pow(lower, 2.0) - shift, std::pow(upper, 2.0) - shift};
    KVAN_LOG(logger, TRACE) << "Calculated monotonic mass range is: [" << masses.first << ", " << masses.second << "]";
    return masses;
}

TofPolynomial::TofPolynomial(const ICalibrationConstantsFunctional& constants) : c3(0.0), shift(0.0) {
    double c1 = 0.0;
    // TOF2 first: its constants are no TOF1 constants, but an object may offer both.
    if (const auto* const tof2 = dynamic_cast<const ICalibrationConstantsFunctionalTOF2*>(&constants)) {
        c0 = tof2->GetStoredC0();
        c1 = tof2->GetStoredC1();
        c2 = tof2->GetStoredC2();
        c3 = tof2->GetStoredC3();
        shift = dynamic_cast<const ICalibrationConstantsFunctionalComputationShift&>(constants).GetShift();
    } else if (const auto* const tof = dynamic_cast<const ICalibrationConstantsFunctionalTOF1*>(&constants)) {
        c0 = tof->GetStoredC0();
        c1 = tof->GetStoredC1();
        c2 = tof->GetStoredC2();
    } else {
        BOOST_THROW_EXCEPTION(std::invalid_argument("The constants are not those of a time-of-flight law."));
    }
    b = std::sqrt(CalibrationTOFUtilities::StoredC1ToComputation(c1));
}

std::vector<double> TofPolynomial::coefficients(std::size_t degree) const {
    std::vector<double> all{c0, b, c2, c3};
    all.resize(degree + 1);
    return all;
}

}  // namespace kvan::calibration::Utilities
