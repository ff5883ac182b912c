#include "constants/PolynomialText.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationPolynomialKITE2.h>
#include <logger/logger.h>
#include <math-base/polynomials.h>

#include <algorithm>
#include <boost/format.hpp>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <sstream>
#include <stdexcept>

// The polynomial for one parent mass out of those that were calibrated, in three steps: the nearest parent scaled to
// the mass, mixed with its neighbour on the other side if the mode interpolates, and its constant coefficient replaced
// by the polynomial VC0 of the root of the mass unless the mode keeps it.
//
// The mix is linear in the mass, or in its root in modes 2 and 3, and holds on the range that both hold on. Parents are
// not sorted here: neighbours in the list must ascend in mass, else the mix throws. Nothing changes when a step fails.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

namespace {

using Polynomial = CalibrationPolynomialSimple;
using Numbers = CalibrationPolynomialKITE2::Numbers;

logging::Logger logger() {
    return logging::Logger::getLogger("kvan.calibration_core.CalibrationPolynomialKITE2");
}

double coefficientOf(const Polynomial& polynomial, std::size_t power) {
    return power < polynomial.coefficients.size() ? polynomial.coefficients[power] : 0.0;
}

/// The first of the nearest ones.
std::size_t nearestParent(const std::vector<Polynomial>& parents, double mass) {
    std::size_t nearest = 0;
    for (std::size_t k = 1; k < parents.size(); ++k)
        if (std::abs(parents[k].parentMass - mass) < std::abs(parents[nearest].parentMass - mass))
            nearest = k;
    return nearest;
}

/// Sets the range that both hold in, or that of `first` if there is none.
void setCommonRange(Polynomial& mixed, const Polynomial& first, const Polynomial& second, double firstMass) {
    // One without a range holds everywhere.
    const Polynomial& bounded = first.IsBounded() ? first : second;
    mixed.argLow = bounded.argLow;
    mixed.argHigh = bounded.argHigh;
    if (!first.IsBounded() || !second.IsBounded())
        return;
    mixed.argLow = std::max(first.argLow, second.argLow);
    mixed.argHigh = std::min(first.argHigh, second.argHigh);
    if (mixed.IsBounded())
        return;
    KVAN_LOG(logger(), WARN) << (boost::format("Strange calibration. Can't determine a common w range during "
                                               "interpolation. Using that of the first polynomial at M=%e") %
                                 firstMass)
                                    .str();
    mixed.argLow = first.argLow;
    mixed.argHigh = first.argHigh;
}

/// Between `lower` and `upper`, both already scaled to `mass` from the parent masses `m1` and `m2`.
Polynomial interpolate(const Polynomial& lower, double m1, const Polynomial& upper, double m2, double mass,
                       bool byRoots) {
    if (!(m2 > m1))
        BOOST_THROW_EXCEPTION(std::runtime_error("Parent mass M2 must be greater than M1."));
    const double weight =
        byRoots ? (std::sqrt(mass) - std::sqrt(m1)) / (std::sqrt(m2) - std::sqrt(m1)) : (mass - m1) / (m2 - m1);
    Polynomial mixed;
    mixed.parentMass = mass;
    mixed.coefficients.resize(std::max(lower.coefficients.size(), upper.coefficients.size()));
    for (std::size_t i = 0; i < mixed.coefficients.size(); ++i)
        mixed.coefficients[i] = (1.0 - weight) * coefficientOf(lower, i) + weight * coefficientOf(upper, i);
    setCommonRange(mixed, lower, upper, m1);
    return mixed;
}

/// That of the nearest parent, mixed with its neighbour on the side of the parent mass if there is one. Modes beyond 3,
/// which no instrument writes, count as 1.
Polynomial forParentMass(const Numbers& numbers) {
    const auto& parents = numbers.parents;
    const double mass = numbers.parentMass;
    const std::size_t nearest = nearestParent(parents, mass);
    const Polynomial scaled = parents[nearest].ScaledTo(mass);
    if (numbers.interpolationMode == 0)
        return scaled;
    const bool byRoots = numbers.interpolationMode == 2 || numbers.interpolationMode == 3;
    const auto mix = [&](std::size_t first) {
        return interpolate(parents[first].ScaledTo(mass), parents[first].parentMass, parents[first + 1].ScaledTo(mass),
                           parents[first + 1].parentMass, mass, byRoots);
    };
    // At the mass of a parent, and outside all of them, there is nothing to mix.
    if (mass > parents[nearest].parentMass && nearest + 1 < parents.size())
        return mix(nearest);
    if (mass < parents[nearest].parentMass && nearest > 0)
        return mix(nearest - 1);
    return scaled;
}

double valueAt(const std::vector<double>& coefficients, double x) {
    return math::horner(0.0, coefficients.size(), x, [&](std::size_t i) { return coefficients[i]; });
}

void dumpPolynomials(std::ostream& sink, const char* title, const std::vector<Polynomial>& polynomials) {
    sink << title << '\n';
    for (const Polynomial& polynomial : polynomials)
        polynomial.Dump(sink);
    sink << "\t\t] \n";
}

}  // namespace

CalibrationPolynomialKITE2::CalibrationPolynomialKITE2(Numbers numbers) {
    if (numbers.parents.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument("CalibrationPolynomialKITE2: no parent polynomials."));
    prepare(std::move(numbers));
}

std::shared_ptr<ICloneable> CalibrationPolynomialKITE2::Clone() const {
    return std::make_shared<CalibrationPolynomialKITE2>(*this);
}

void CalibrationPolynomialKITE2::SetParentMass(double mass) {
    Numbers numbers = m_numbers;
    numbers.parentMass = mass;
    prepare(std::move(numbers));
}

/// Changes nothing when it fails.
void CalibrationPolynomialKITE2::prepare(Numbers numbers) {
    KVAN_LOG(logger(), DEBUG) << "Preparing for parent mass = " << numbers.parentMass;
    CalibrationPolynomialSimple current = forParentMass(numbers);
    constexpr int keepsOffset = 3;
    if (!numbers.vc0.empty() && numbers.interpolationMode != keepsOffset) {
        current.coefficients.resize(std::max<std::size_t>(current.coefficients.size(), 1));
        current.coefficients[0] = valueAt(numbers.vc0, std::sqrt(numbers.parentMass));
    }
    KVAN_LOG(logger(), DEBUG) << "Polynomial after interpolation: " << [&] {
        std::ostringstream text;
        current.Dump(text);
        return text.str();
    }();
    m_numbers = std::move(numbers);
    m_current = std::move(current);
}

/// The reference time at calibration does not count: nothing uses it, and a text has no place for it.
bool CalibrationPolynomialKITE2::IsEqual(const ICalibrationPolynomial& other) const {
    const auto* const same = dynamic_cast<const CalibrationPolynomialKITE2*>(&other);
    if (same == nullptr)
        return false;
    const Numbers& a = m_numbers;
    const Numbers& b = same->m_numbers;
    return relativelyEqual({a.parentMass, a.referenceTime, a.measuredParentMass},
                           {b.parentMass, b.referenceTime, b.measuredParentMass}) &&
           a.indexRange == b.indexRange && a.ignoreIndexBounds == b.ignoreIndexBounds &&
           a.interpolationMode == b.interpolationMode &&
           std::equal(a.parents.begin(), a.parents.end(), b.parents.begin(), b.parents.end(),
                      [](const Polynomial& x, const Polynomial& y) { return x.IsEqual(y); }) &&
           a.global.IsEqual(b.global) && relativelyEqual(a.vc0, b.vc0);
}

/// The global polynomial is the one that was measured.
void CalibrationPolynomialKITE2::Dump(std::ostream& sink) const {
    const Numbers& n = m_numbers;
    sink << "\tCalibrationPolynomialKITE2[ \n"
         << "\t\tInterpolation mode = " << n.interpolationMode
         << "\n\t\tMeasured parent mass = " << n.measuredParentMass << '\n';
    dumpPolynomials(sink, "\t\tGlobal polynomial[ ", {n.global});
    dumpPolynomials(sink, "\t\tMeasured global polynomial[ ", {n.global});
    dumpPolynomials(sink, "\t\tParent polynomials[ ", n.parents);
    dumpPolynomials(sink, "\t\tKITE2 polynomial[ ", {m_current});
    sink << "\t\tVC0 coefficients[";
    writeList(sink, n.vc0);
    sink << "], Arg range = [" << m_current.argLow << ", " << m_current.argHigh << "]\n\t]\n";
}

}  // namespace kvan::calibration::Constants
