#include "transformation/gpx/CalibrationTransformatorGPX.h"

#include "utilities/FiniteNumbers.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <ostream>
#include <stdexcept>

// A law G gives the apparent mass of a precise one, and is asked for the inverse. Corrections are some parts per
// million, so x = (m - G(m)) + m is one step of a fixed-point search from x = m whose contraction is |1 - G'| of the
// same size; its result is taken if G(x) is m within `g_nearEnough`, else G is searched.
//
// Blocks work out the first order of all masses and test them together; only a chunk with a mass that is far off goes
// mass by mass, with the same bits. A mass without a solution ends the block.
namespace kvan::calibration::Transformation {

namespace {

using Doubles = ICalibrationTransformator::Doubles;

constexpr int g_gpxStrategy = 10;
/// In units of m/z: given with the correction, a hundredth of a part per million at m/z 1000. Masses whose first order
/// stays within it are not searched, and their bits are those of the formula.
constexpr double g_nearEnough = 1e-5;
/// Of the search for a precise mass: corrections are parts per million, a whole unit of m/z is far off.
constexpr double g_leastSearchWidth = 1.0;

constexpr const char* g_failed = "a transformation failed, most likely due to bad calibration constants";
constexpr const char* g_gpxFailed = "GPX transformation failed, most likely due to bad calibration constants";

double firstOrder(double mass, double apparent) {
    return (mass - apparent) + mass;
}

bool isNear(double mass, double apparent) {
    return std::abs(mass - apparent) < g_nearEnough;
}

QSF_VECTOR_CLONES void firstOrders(const double* masses, const double* apparent, double* first, std::size_t count) {
    QSF_INDEPENDENT_ELEMENTS
    for (std::size_t k = 0; k < count; ++k)
        first[k] = firstOrder(masses[k], apparent[k]);
}

QSF_VECTOR_CLONES bool areNear(const double* masses, const double* apparent, std::size_t count) {
    bool near = true;
    for (std::size_t k = 0; k < count; ++k)
        near &= isNear(masses[k], apparent[k]);
    return near;
}

template <class Convert>
void convertOrFail(Doubles& masses, double cost, const char* failure, Convert convertBlock) {
    const auto convert = [&](std::size_t begin, std::size_t end) {
        return convertBlock(masses.data() + begin, end - begin);
    };
    // No fork inside a region: the caller is a team already.
    const bool failed =
        insideParallelRegion() ? convert(0, masses.size()) : convertBlocks(masses.size(), cost, std::cref(convert));
    if (failed)
        BOOST_THROW_EXCEPTION(std::logic_error(failure));
}

}  // namespace

CalibrationTransformatorGPX::CalibrationTransformatorGPX(const std::shared_ptr<ICalibrationTransformator>& inner,
                                                         const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial)
    : Base(inner) {
    SetPolynomial(polynomial);
}

CalibrationTransformatorGPX::CalibrationTransformatorGPX(const CalibrationTransformatorGPX& other)
    : Base(other),
      ICalibrationTransformatorGPX(),
      m_polynomial(cloneObject(other.m_polynomial)),
      m_apparentMass(other.m_apparentMass),
      m_searchWidth(other.m_searchWidth) {}

std::shared_ptr<ICalibrationTransformator> CalibrationTransformatorGPX::GetTransformator() const {
    return std::dynamic_pointer_cast<ICalibrationTransformator>(inner().Clone());
}

void CalibrationTransformatorGPX::SetTransformator(const std::shared_ptr<ICalibrationTransformator>& transformator) {
    if (transformator)
        setInner(transformator);
}

void CalibrationTransformatorGPX::SetPolynomial(const std::shared_ptr<ICalibrationPolynomialGPX>& polynomial) {
    m_polynomial = cloneObject(polynomial);
    // Null, a switch that is off and no coefficients are one: nothing is corrected.
    m_apparentMass = {};
    if (!m_polynomial || !m_polynomial->GetUse() || m_polynomial->GetCoefficients().empty())
        return;
    const auto [minMass, maxMass] = m_polynomial->GetGlobalMassRange();
    m_apparentMass = math::CFunction(g_gpxStrategy, m_polynomial->GetCoefficients(), minMass, maxMass);
    // A precise mass lies as far from its apparent one as G from the identity: twice the worse end leaves room.
    const double atMin = m_apparentMass(minMass) - minMass;
    const double atMax = m_apparentMass(maxMass) - maxMass;
    m_searchWidth = std::max({g_leastSearchWidth, 2.0 * atMax, 2.0 * atMin});
}

double CalibrationTransformatorGPX::PreciseMassToMass(double mass) const {
    return m_apparentMass ? m_apparentMass(mass) : mass;
}

double CalibrationTransformatorGPX::MassToPreciseMassImpl(double mass) const {
    if (!m_apparentMass)
        return mass;
    const double first = firstOrder(mass, m_apparentMass(mass));
    if (isNear(mass, m_apparentMass(first)))
        return first;
    const std::optional<double> precise = search(mass);
    if (!precise)
        BOOST_THROW_EXCEPTION(std::logic_error("gpx polynomial could not be inverted in a unique way"));
    return *precise;
}

std::optional<double> CalibrationTransformatorGPX::search(double mass) const noexcept {
    // A search evaluates G some dozens of times for every mass of an array.
    if (m_polynomial->GetCoefficients().size() > Utilities::g_mostCoefficients)
        return std::nullopt;
    bool found = false;
    double precise = mass;
    m_apparentMass.Inverse(mass, mass, mass - m_searchWidth, mass + m_searchWidth, found, precise);
    return found ? std::optional<double>(precise) : std::nullopt;
}

bool ApparentMassToMassTransformFunctor::operator()(double* values, std::size_t count) const noexcept {
    const math::CFunction& apparentMass = gpx.m_apparentMass;
    if (!apparentMass)
        return false;
    // Two arrays of 2 KiB, which stay in the first cache.
    constexpr std::size_t chunkSize = 256;
    double first[chunkSize];
    double apparent[chunkSize];
    for (std::size_t begin = 0; begin < count; begin += chunkSize) {
        double* const masses = values + begin;
        const std::size_t size = std::min(chunkSize, count - begin);
        apparentMass.Values(masses, apparent, size);
        firstOrders(masses, apparent, first, size);
        apparentMass.Values(first, apparent, size);
        if (areNear(masses, apparent, size)) {
            std::copy_n(first, size, masses);
            continue;
        }
        // Mass by mass, each as the single form would do it.
        for (std::size_t k = 0; k < size; ++k) {
            const std::optional<double> precise = isNear(masses[k], apparent[k]) ? first[k] : gpx.search(masses[k]);
            if (!precise)
                return true;
            masses[k] = *precise;
        }
    }
    return false;
}

bool CalibrationTransformatorGPX::ToInnerBlock(double* values, std::size_t count) const noexcept {
    if (m_apparentMass)
        m_apparentMass.Values(values, values, count);
    return false;
}

void CalibrationTransformatorGPX::PreciseMassesToMasses(Doubles& masses) const {
    convertOrFail(masses, ToInnerCost, g_failed,
                  [this](double* values, std::size_t count) { return ToInnerBlock(values, count); });
}

void CalibrationTransformatorGPX::PreciseMassesToMasses(const Doubles& preciseMasses, Doubles& masses) const {
    masses = preciseMasses;
    convertOrFail(masses, ToInnerCost, g_gpxFailed,
                  [this](double* values, std::size_t count) { return ToInnerBlock(values, count); });
}

void CalibrationTransformatorGPX::MassesToPreciseMasses(Doubles& masses) const {
    convertOrFail(masses, FromInnerCost, g_failed, ApparentMassToMassTransformFunctor{*this});
}

void CalibrationTransformatorGPX::MassesToPreciseMasses(const Doubles& masses, Doubles& preciseMasses) const {
    preciseMasses = masses;
    MassesToPreciseMasses(preciseMasses);
}

bool CalibrationTransformatorGPX::IsEqual(const ICalibrationTransformator& other) const {
    const auto* const same = dynamic_cast<const CalibrationTransformatorGPX*>(&other);
    if (same == nullptr || (m_polynomial == nullptr) != (same->m_polynomial == nullptr))
        return false;
    return (!m_polynomial || m_polynomial->IsEqual(*same->m_polynomial)) && inner().IsEqual(same->inner());
}

void CalibrationTransformatorGPX::Dump(std::ostream& sink) const {
    sink << "CalibrationTransformatorGPX[ ";
    inner().Dump(sink);
    if (m_polynomial)
        m_polynomial->Dump(sink);
    sink << "]\n";
}

}  // namespace kvan::calibration::Transformation
