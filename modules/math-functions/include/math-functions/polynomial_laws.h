#pragma once

#include <math-base/polynomials.h>
#include <sysutils/vector_clones.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

/// The formulas of the polynomial elements as plain values: single values, blocks and the search share them. A law is a
/// polynomial of `Argument`(x), and `Continued` outside its range; all branches are worked out for each x, so that a
/// loop has none.
namespace kvan::math {

/// The argument range of a polynomial; all numbers where the ends are not in order.
struct ArgumentRange {
    ArgumentRange(double low, double high) {
        if (low < high) {
            lower = low;
            upper = high;
        }
    }
    double lower = -std::numeric_limits<double>::infinity();
    double upper = std::numeric_limits<double>::infinity();
};

/// Horner's rule from the top. Refers to the coefficients, of which there is one at least.
class Polynomial {
public:
    explicit Polynomial(const std::vector<double>& coefficients)
        : m_coefficients(coefficients.data()), m_degree(coefficients.size() - 1) {}

    [[gnu::always_inline]] double operator()(double x) const {
        const double* const coefficients = m_coefficients;
        return horner(coefficients[m_degree], m_degree, x, [coefficients](std::size_t i) { return coefficients[i]; });
    }

    /// The same of `count` arguments, coefficient by coefficient. `values` must not overlap `x`.
    [[gnu::always_inline]] void Values(const double* x, double* values, std::size_t count) const {
        for (std::size_t k = 0; k < count; ++k)
            values[k] = m_coefficients[m_degree];
        for (std::size_t i = m_degree; i-- > 0;) {
            const double coefficient = m_coefficients[i];
            QSF_INDEPENDENT_ELEMENTS
            for (std::size_t k = 0; k < count; ++k)
                values[k] = values[k] * x[k] + coefficient;
        }
    }

private:
    const double* m_coefficients;
    std::size_t m_degree;
};

/// The polynomial for all x.
class EverywhereLaw {
public:
    explicit EverywhereLaw(const Polynomial& polynomial) : m_polynomial(polynomial) {}

    const Polynomial& Inside() const { return m_polynomial; }
    [[gnu::always_inline]] static double Argument(double x) { return x; }
    [[gnu::always_inline]] double Continued(double, double inside) const { return inside; }

private:
    Polynomial m_polynomial;
};

/// Leaves the range with the distance from the identity that the polynomial has at the end: x + (f(end) - end).
class ShiftExtLaw {
public:
    ShiftExtLaw(const Polynomial& polynomial, const ArgumentRange& range)
        : m_polynomial(polynomial),
          m_range(range),
          m_below(polynomial(range.lower) - range.lower),
          m_above(polynomial(range.upper) - range.upper) {}

    const ArgumentRange& Range() const { return m_range; }
    const Polynomial& Inside() const { return m_polynomial; }
    [[gnu::always_inline]] static double Argument(double x) { return x; }
    [[gnu::always_inline]] double Continued(double x, double inside) const {
        const double notAbove = x < m_range.lower ? x + m_below : inside;
        return x > m_range.upper ? x + m_above : notAbove;
    }

private:
    Polynomial m_polynomial;
    ArgumentRange m_range;
    double m_below;
    double m_above;
};

struct PlainArgument {
    [[gnu::always_inline]] static double Of(double x) { return x; }
};

struct RootArgument {
    [[gnu::always_inline]] static double Of(double x) { return std::sqrt(x); }
};

/// A polynomial that leaves the range straight: f(end) + f'(end) * (x - end).
template <class ArgumentPolicy>
class StraightExtLaw {
public:
    StraightExtLaw(const Polynomial& polynomial, const ArgumentRange& range, double lowerSlope, double upperSlope)
        : m_polynomial(polynomial),
          m_range(range),
          m_lowerValue(polynomial(Argument(range.lower))),
          m_upperValue(polynomial(Argument(range.upper))),
          m_lowerSlope(lowerSlope),
          m_upperSlope(upperSlope) {}

    const ArgumentRange& Range() const { return m_range; }
    const Polynomial& Inside() const { return m_polynomial; }
    [[gnu::always_inline]] static double Argument(double x) { return ArgumentPolicy::Of(x); }
    [[gnu::always_inline]] double Continued(double x, double inside) const {
        const double notAbove = x < m_range.lower ? m_lowerValue + m_lowerSlope * (x - m_range.lower) : inside;
        return x > m_range.upper ? m_upperValue + m_upperSlope * (x - m_range.upper) : notAbove;
    }

private:
    Polynomial m_polynomial;
    ArgumentRange m_range;
    double m_lowerValue;
    double m_upperValue;
    double m_lowerSlope;
    double m_upperSlope;
};

/// A polynomial in sqrt(x) that leaves the range straight.
using DerivExtLaw = StraightExtLaw<RootArgument>;

template <class Law>
[[gnu::always_inline]] inline double valueOf(const Law& law, double x) {
    return law.Continued(x, law.Inside()(Law::Argument(x)));
}

/// As many values as are worked out at a time: all of it stays in the first cache while the coefficients pass over it.
inline constexpr std::size_t g_chunkSize = 256;

/// The same for at most `g_chunkSize` arguments. `x` and `values` may be one array.
template <class Law>
[[gnu::always_inline]] inline void valuesOf(const Law& law, const double* x, double* values, std::size_t count) {
    double arguments[g_chunkSize];
    double inside[g_chunkSize];
    for (std::size_t k = 0; k < count; ++k)
        arguments[k] = Law::Argument(x[k]);
    law.Inside().Values(arguments, inside, count);
    QSF_INDEPENDENT_ELEMENTS
    for (std::size_t k = 0; k < count; ++k)
        values[k] = law.Continued(x[k], inside[k]);
}

}  // namespace kvan::math
