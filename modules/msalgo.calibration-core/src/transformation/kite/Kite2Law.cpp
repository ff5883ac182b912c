#include "transformation/kite/Kite2Law.h"

#include "utilities/FiniteNumbers.h"

#include <math-base/find_zero_block.h>
#include <math-base/polynomials.h>
#include <math-functions/invert.h>
#include <sysutils/vector_clones.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cmath>
#include <limits>
#include <stdexcept>

// raw = h(w) + base with w = sqrt(|g(mass)|). The way back solves h(w) = raw - base for w in [0, infinity) and, if g is
// not the identity, g(mass) = w * w near w * w. The first bracket of w is the step [2^(k-1), 2^k] of h that passes the
// value, as the search for a single one finds it; h at those knots is worked out once for a law.
//
// Blocks run 64 searches side by side, all in one vector loop, with the bits of the single search: brackets are the
// same, and so is each step. What has no bracket among the knots, or fails, is left to the single form, which throws.
namespace kvan::calibration::Transformation {

namespace {

using Polynomial = Constants::CalibrationPolynomialSimple;

constexpr const char* g_noLaw = "Kite2 InitData(): unexpected error.";
constexpr const char* g_noInverse = "Kite2 RawToMass: unable to invert polynomial.";

[[noreturn]] void fail(const char* text) {
    BOOST_THROW_EXCEPTION(std::runtime_error(text));
}

constexpr double g_endless = std::numeric_limits<double>::max();

/// Half the width of the search for a mass whose g is `x`.
[[gnu::always_inline]] inline double searchWidth(double x) {
    return std::max(1.0, 0.01 * std::fabs(x));
}

void requireUsable(const Polynomial& polynomial) {
    if (!Utilities::areUsable(polynomial.coefficients))
        fail(g_noLaw);
}

void requireNoExtrema(std::vector<double> derivative, const Polynomial& polynomial) {
    // The companion matrix needs a highest coefficient that is not 0.
    while (derivative.size() > 1 && derivative.back() == 0.0)
        derivative.pop_back();
    // Only extrema inside a range count: a polynomial without one is taken as it is.
    if (derivative.size() < 2 || !polynomial.IsBounded())
        return;
    std::vector<std::complex<double>> roots;
    try {
        math::polynomialRoots(derivative.size(), derivative.data(), roots);
    } catch (const std::runtime_error&) {  // a highest coefficient that is next to nothing
        fail(g_noLaw);
    }
    for (const std::complex<double>& root : roots)
        if (root.imag() == 0.0 && root.real() > polynomial.argLow && root.real() < polynomial.argHigh)
            fail("Polynomial has local extrema inside boundaries.");
}

bool isIdentity(const std::vector<double>& coefficients) {
    if (coefficients.size() < 2)
        fail("Bad global-poly coefficients.");
    return coefficients[0] == 0.0 && coefficients[1] == 1.0 &&
           std::all_of(coefficients.begin() + 2, coefficients.end(), [](double value) { return value == 0.0; });
}

}  // namespace

Kite2Law::Stage::Stage(const Polynomial& polynomial)
    : coefficients(polynomial.coefficients.empty() ? std::vector<double>{0.0} : polynomial.coefficients),
      derivative(math::derivativeOf(coefficients)),
      law(math::Polynomial(coefficients), math::ArgumentRange(polynomial.argLow, polynomial.argHigh),
          math::Polynomial(derivative)(polynomial.argLow), math::Polynomial(derivative)(polynomial.argHigh)) {}

Kite2Law::Kite2Law(const Constants::CalibrationPolynomialKITE2& polynomial)
    : m_polynomial(polynomial.GetCurrentPolynomial()), m_base(polynomial.GetNumbers().referenceTime) {
    const Polynomial& current = polynomial.GetCurrentPolynomial();
    const Polynomial& global = polynomial.GetNumbers().global;
    requireUsable(current);
    requireUsable(global);
    if (!std::isfinite(m_base))
        fail(g_noLaw);
    requireNoExtrema(m_polynomial.derivative, current);
    // Without it a mass is w * w, and one search is enough.
    if (!isIdentity(global.coefficients))
        m_global.emplace(global);

    for (std::size_t k = 0; k < KnotCount; ++k) {
        m_knots[k] = k == 0 ? 0.0 : std::ldexp(1.0, static_cast<int>(k) - 1);
        m_values[k] = valueOf(m_polynomial.law, m_knots[k]);
    }
    // Brackets are kept as far as h rises from knot to knot; beyond, and where it falls, the single form searches.
    while (m_rising < KnotCount && m_values[m_rising] > m_values[m_rising - 1])
        ++m_rising;
}

double Kite2Law::MassToRaw(double mass) const {
    const double square = m_global ? valueOf(m_global->law, mass) : mass;
    return valueOf(m_polynomial.law, std::sqrt(std::fabs(square))) + m_base;
}

double Kite2Law::RawToMass(double raw) const {
    const auto w =
        math::invert([this](double x) { return valueOf(m_polynomial.law, x); }, raw - m_base, 0.0, g_endless);
    if (!w)
        fail(g_noInverse);
    const double x = *w * *w;
    if (!m_global)
        return x;
    // g is near the identity: a percent of the mass, and at least one unit, holds its inverse.
    const double width = searchWidth(x);
    const auto mass = math::invert([this](double m) { return valueOf(m_global->law, m); }, x, x - width, x + width);
    if (!mass)
        fail(g_noInverse);
    return *mass;
}

/// As many searches as run side by side, and which of them are left to the single form: those that fail, and those that
/// go beyond the knots. Their brackets have no width.
struct Kite2Law::Searches {
    math::ZeroBlock block;
    std::int64_t single[math::g_zeroBlockSize];  ///< 0 or not, as wide as the numbers
};

/// The step that passes `y` first; `m_rising` if that is not among the kept ones. Below the knot where the values cease
/// to rise it is the only one.
std::size_t Kite2Law::knotOf(double y) const {
    std::size_t knot = 1;
    while (knot < m_rising && !(m_values[knot - 1] < y && y < m_values[knot]))
        ++knot;
    return knot;
}

/// The brackets of w. Neighbours on an axis mostly have one bracket in common.
QSF_VECTOR_CLONES void Kite2Law::bracketRoots(const double* raws, std::size_t count, Searches& searches) const {
    constexpr std::size_t size = math::g_zeroBlockSize;
    math::ZeroBlock& block = searches.block;
    for (std::size_t k = 0; k < size; ++k)
        block.y[k] = (k < count ? raws[k] : raws[0]) - m_base;
    // The bracket of the first value is tried for all of them before each is asked for its own.
    const std::size_t common = knotOf(block.y[0]);
    const double a = m_knots[common - 1];
    const double b = m_knots[std::min(common, KnotCount - 1)];
    const double ha = m_values[common - 1];
    const double hb = m_values[std::min(common, KnotCount - 1)];
    std::int64_t others = 0;
    for (std::size_t k = 0; k < size; ++k) {
        const bool passed = (ha < block.y[k]) & (block.y[k] < hb);
        searches.single[k] = passed ? std::int64_t{0} : std::int64_t{1};
        others |= searches.single[k];
        block.previousX[k] = passed ? a : 0.0;
        block.previousY[k] = passed ? ha - block.y[k] : 0.0;
        block.bestX[k] = passed ? b : 0.0;
        block.bestY[k] = passed ? hb - block.y[k] : 0.0;
    }
    // A bracket without width is one that has ended: its search costs a selection, no branch.
    for (std::size_t k = 0; others != 0 && k < count; ++k) {
        const std::size_t knot = knotOf(block.y[k]);
        searches.single[k] = knot == m_rising ? 1 : 0;
        if (knot == m_rising)
            continue;
        block.previousX[k] = m_knots[knot - 1];
        block.previousY[k] = m_values[knot - 1] - block.y[k];
        block.bestX[k] = m_knots[knot];
        block.bestY[k] = m_values[knot] - block.y[k];
    }
}

/// Goes on from w to the brackets of the mass.
QSF_VECTOR_CLONES void Kite2Law::bracketMasses(const Straight global, Searches& searches) {
    math::ZeroBlock& block = searches.block;
    alignas(64) math::ZeroBlock::Column lower, upper, below, above;
    for (std::size_t k = 0; k < math::g_zeroBlockSize; ++k) {
        const double x = block.bestX[k] * block.bestX[k];
        const double width = searchWidth(x);
        block.y[k] = x;
        lower[k] = x - width;
        upper[k] = x + width;
    }
    math::valuesOf(global, lower, below, math::g_zeroBlockSize);
    math::valuesOf(global, upper, above, math::g_zeroBlockSize);
    for (std::size_t k = 0; k < math::g_zeroBlockSize; ++k) {
        const double x = block.y[k];
        const double ga = below[k] - x;
        const double gb = above[k] - x;
        const bool passed = ((ga < 0.0) & (gb > 0.0)) | ((ga > 0.0) & (gb < 0.0));
        block.previousX[k] = passed ? lower[k] : 0.0;
        block.previousY[k] = passed ? ga : 0.0;
        block.bestX[k] = passed ? upper[k] : 0.0;
        block.bestY[k] = passed ? gb : 0.0;
        searches.single[k] |= passed ? std::int64_t{0} : std::int64_t{1};
    }
}

QSF_VECTOR_CLONES void Kite2Law::solve(const Straight law, Searches& searches) {
    math::findZeroBlock(
        [&law](const math::ZeroBlock::Column& x, math::ZeroBlock::Column& values)
            __attribute__((always_inline)) { math::valuesOf(law, x, values, math::g_zeroBlockSize); },
        searches.block);
}

void Kite2Law::convertBlock(double* values, std::size_t count) const {
    Searches searches;
    bracketRoots(values, count, searches);
    solve(m_polynomial.law, searches);
    if (m_global) {
        bracketMasses(m_global->law, searches);
        solve(m_global->law, searches);
    }
    for (std::size_t k = 0; k < count; ++k) {
        const double zero = searches.block.bestX[k];
        // Gives the value of the single form or throws in its words.
        if (searches.single[k] != 0)
            values[k] = RawToMass(values[k]);
        else
            values[k] = m_global ? zero : zero * zero;
    }
}

bool Kite2Law::RawsToMasses(double* values, std::size_t count) const noexcept {
    try {
        for (std::size_t begin = 0; begin < count; begin += math::g_zeroBlockSize)
            convertBlock(values + begin, std::min(math::g_zeroBlockSize, count - begin));
        return false;
    } catch (const std::runtime_error&) {
        return true;
    }
}

}  // namespace kvan::calibration::Transformation
