#include "transformation/tof2/Tof2CubicRange.h"

#include "transformation/tof2/PolynomialRoots.h"

#include <math-base/find_zero.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>

// Where the approximate way back of the cubic law may be used: where both the law and its quadratic part rise, where
// the times of both overlap, one mass unit inside either end, and as far up as the round trip from mass to raw to mass
// errs by less than the tolerance. An interval that vanishes on the way collapses to one mass; times that do not
// overlap give (0.0, 0.0) and a WARN line.
namespace kvan::calibration::Transformation {

namespace {

struct PairText {
    std::pair<double, double> pair;
};

std::ostream& operator<<(std::ostream& sink, const PairText& text) {
    return sink << "(" << text.pair.first << ", " << text.pair.second << ")";
}

std::string textOf(const std::vector<double>& values) {
    std::ostringstream text;
    for (const double value : values)
        text << value << " ";
    return text.str();
}

}  // namespace

Tof2CubicRange::Tof2CubicRange(const ICalibrationTransformator& law, const ICalibrationConstantsFunctional& constants)
    : m_law(law),
      m_polynomial(constants),
      m_logger(logging::Logger::getLogger("kvan.calibration_core.CalibrationTransformatorTOF2Cubic")) {}

double Tof2CubicRange::exactRawToMass(double raw, double lower, double upper) const {
    const auto roots = realRootsOfCubic(m_polynomial.c0 - raw, m_polynomial.b, m_polynomial.c2, m_polynomial.c3);
    // In the order of the solver: the first that fits is taken, also where several do.
    for (const double root : roots) {
        const double mass = root * root - m_polynomial.shift;
        if (!(root < 0.0) && mass >= lower && mass <= upper)
            return mass;
    }
    // Rounding moved the root across an end: the nearer end, by raw value, is meant.
    KVAN_LOG(m_logger, TRACE) << "Round-off handling; roots = " << textOf(roots);
    const double rawLower = m_law.MassToRaw(lower);
    const double rawUpper = m_law.MassToRaw(upper);
    KVAN_LOG(m_logger, TRACE) << "- time = " << raw << ", boundaries = " << PairText{{rawLower, rawUpper}};
    // Halfway between the raw values, not the masses.
    const bool isLower = raw < (rawUpper + rawLower) * 0.5;
    KVAN_LOG(m_logger, TRACE) << "- choosing " << (isLower ? "lower" : "upper") << " boundary.";
    return isLower ? lower : upper;
}

Tof2CubicRange::Range Tof2CubicRange::usableMassRange(double mass, double tolerance) const {
    KVAN_LOG(m_logger, TRACE) << "usableMassRange() for " << PairText{{mass, tolerance}};
    const Range monotonic = monotonicRangeOfApproximation(mass);
    if (monotonic.first == monotonic.second)
        return monotonic;
    const Range times = usableTimeRange(monotonic);
    if (!(times.second > times.first)) {
        KVAN_LOG(m_logger, WARN) << "Usable time ranges don't overlap. Bad quadratic approximation.";
        return {0.0, 0.0};
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double first = exactRawToMass(times.first, monotonic.first, monotonic.second);
    const double last = times.second == infinity ? std::numeric_limits<double>::max()
                                                 : exactRawToMass(times.second, monotonic.first, monotonic.second);
    // The ends are where one of the curves turns or leaves the other: one unit of mass inside.
    Range usable{first + 1.0, last - 1.0};
    if (!(usable.first < usable.second))
        // Nothing is left: the middle stands for the empty range.
        usable.first = usable.second = (first + last) * 0.5;
    if (usable.first != usable.second && tolerance != 0.0)
        usable = restrictRoundTrip(usable, tolerance);
    return usable;
}

Tof2CubicRange::Range Tof2CubicRange::monotonicRangeOfApproximation(double mass) const {
    const Range approximate =
        Utilities::monotonicPolyShiftedSqrtRange({0.0, m_polynomial.b, m_polynomial.c2}, mass, m_polynomial.shift);
    KVAN_LOG(m_logger, TRACE) << "monotonic range approx = " << PairText{approximate};
    const Range exact = m_law.monotonicMassRange(mass);
    Range both{std::max(approximate.first, exact.first), std::min(approximate.second, exact.second)};
    KVAN_LOG(m_logger, TRACE) << "       monotonic range = " << PairText{both};
    // The sign of an empty range: both ends are one.
    if (both.first > both.second)
        both.second = both.first;
    return both;
}

Tof2CubicRange::Range Tof2CubicRange::usableTimeRange(const Range& masses) const {
    const auto approximateRaw = [this](double mass) {
        const double s = std::sqrt(m_polynomial.shift + mass);
        return (s * m_polynomial.c2 + m_polynomial.b) * s + m_polynomial.c0;
    };
    const Range approximate{approximateRaw(masses.first), approximateRaw(masses.second)};
    KVAN_LOG(m_logger, TRACE) << "     time range approx = " << PairText{approximate};
    const Range exact{m_law.MassToRaw(masses.first), m_law.MassToRaw(masses.second)};
    KVAN_LOG(m_logger, TRACE) << "      time range exact = " << PairText{exact};
    const Range usable{std::max(approximate.first, exact.first), std::min(approximate.second, exact.second)};
    KVAN_LOG(m_logger, TRACE) << "     usable time range = " << PairText{usable};
    return usable;
}

/// Only the upper end moves: the approximation grows worse with mass. An error that is too great from the start leaves
/// nothing of the range.
Tof2CubicRange::Range Tof2CubicRange::restrictRoundTrip(const Range& masses, double tolerance) const {
    constexpr int maxIterations = 1000;
    const auto excess = [&](double mass) {
        return std::abs(m_law.RawToMass(m_law.MassToRaw(mass)) - mass) - tolerance;
    };
    Range restricted = masses;
    if (!(excess(masses.second) <= 0.0))
        restricted.second = excess(masses.first) >= 0.0
                                ? masses.first
                                : math::findZeroInRange(masses.first, masses.second, excess, 0.0, maxIterations);
    KVAN_LOG(m_logger, TRACE) << "Restricted round-trip error => " << PairText{restricted};
    return restricted;
}

}  // namespace kvan::calibration::Transformation
