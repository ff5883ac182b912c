#include "cfunction/polynomial_elements.h"

#include <math-functions/invert.h>
#include <sysutils/vector_clones.h>

#include <algorithm>
#include <cmath>

// Polynomials and what continues them. Values run in vector loops over chunks and have the bits of the single ones.
// Derivatives are exact, from the coefficients: the one of order n of x^p is p (p - 1) ... (p - n + 1) x^(p - n), also
// for the half powers of a polynomial in sqrt(x). Outside the range a continued polynomial has the slope of its line.
namespace kvan::math {

namespace {

/// The law comes by value, so that nothing stored can change it.
template <class Law>
QSF_VECTOR_CLONES void evaluateChunk(const Law law, const double* x, double* values, std::size_t count) {
    valuesOf(law, x, values, count);
}

/// power * (power - 1) * ..., of `order` factors.
double fallingFactorial(double power, int order) {
    double product = 1.0;
    // A whole power below the order gives 0.0 at once, half powers never do.
    for (int k = 0; k < order && product != 0.0; ++k)
        product *= power - k;
    return product;
}

double derivativeAt(const std::vector<double>& coefficients, double x, int order) {
    const auto lowest = static_cast<std::size_t>(order);
    const std::size_t count = coefficients.size() > lowest ? coefficients.size() - lowest : 0;
    return horner(0.0, count, x, [&](std::size_t i) {
        return coefficients[lowest + i] * fallingFactorial(static_cast<double>(lowest + i), order);
    });
}

double halfPowerDerivativeOf(const std::vector<double>& coefficients, double x, int order) {
    double value = 0.0;
    for (std::size_t i = 0; i < coefficients.size(); ++i) {
        const double power = static_cast<double>(i) * 0.5;
        const double factor = coefficients[i] * fallingFactorial(power, order);
        // A power that has vanished must not meet an infinite pow(0.0, negative).
        if (factor != 0.0)
            value += factor * std::pow(x, power - order);
    }
    return value;
}

}  // namespace

template <class Law>
double CSpec1dPolynomElem<Law>::Value(double x) const {
    return valueOf(m_law, x);
}

template <class Law>
void CSpec1dPolynomElem<Law>::Values(const double* x, double* values, std::size_t count) const {
    for (std::size_t begin = 0; begin < count; begin += g_chunkSize)
        evaluateChunk(m_law, x + begin, values + begin, std::min(g_chunkSize, count - begin));
}

template <class Law>
std::optional<double> CSpec1dPolynomElem<Law>::Inverse(double y, double lower, double upper) const {
    return invert([this](double x) { return valueOf(m_law, x); }, y, lower, upper);
}

template class CSpec1dPolynomElem<EverywhereLaw>;
template class CSpec1dPolynomElem<ShiftExtLaw>;
template class CSpec1dPolynomElem<DerivExtLaw>;

CSpec1dIntPolynomElemXAll::CSpec1dIntPolynomElemXAll(const std::vector<double>& coefficients)
    : CSpec1dPolynomElem(coefficients) {}

double CSpec1dIntPolynomElemXAll::Derivative(double x, int order) const {
    return derivativeAt(coefficients(), x, order);
}

CSpec1dIntPolynomElemXCopyExt::CSpec1dIntPolynomElemXCopyExt(const std::vector<double>& coefficients,
                                                             const ArgumentRange& range)
    : CSpec1dPolynomElem(coefficients, range) {}

double CSpec1dIntPolynomElemXCopyExt::Derivative(double x, int order) const {
    if (x < law().Range().lower || x > law().Range().upper)
        return order == 1 ? 1.0 : 0.0;
    return derivativeAt(coefficients(), x, order);
}

CSpec1dRealPolynomElemXDerivExt::CSpec1dRealPolynomElemXDerivExt(const std::vector<double>& coefficients,
                                                                 const ArgumentRange& range)
    : CSpec1dPolynomElem(coefficients, range, halfPowerDerivativeOf(coefficients, range.lower, 1),
                         halfPowerDerivativeOf(coefficients, range.upper, 1)) {}

double CSpec1dRealPolynomElemXDerivExt::Derivative(double x, int order) const {
    const ArgumentRange& range = law().Range();
    if (x < range.lower || x > range.upper)
        return order == 1 ? halfPowerDerivativeOf(coefficients(), x < range.lower ? range.lower : range.upper, 1) : 0.0;
    return halfPowerDerivativeOf(coefficients(), x, order);
}

}  // namespace kvan::math
