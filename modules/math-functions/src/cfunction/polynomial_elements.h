#pragma once

#include "cfunction/function_elements.h"

#include <math-functions/polynomial_laws.h>

#include <vector>

namespace kvan::math {

/// Base of the elements whose values are those of one law over coefficients in ascending order of power.
template <class Law>
class CSpec1dPolynomElem : public CSpec1dElem {
public:
    double Value(double x) const final;
    void Values(const double* x, double* values, std::size_t count) const final;
    std::optional<double> Inverse(double y, double lower, double upper) const final;

protected:
    /// `parameters` follow the polynomial in the constructor of the law. No coefficients: 0.0.
    template <class... Parameters>
    explicit CSpec1dPolynomElem(const std::vector<double>& coefficients, const Parameters&... parameters)
        : m_coefficients(coefficients.empty() ? std::vector<double>{0.0} : coefficients),
          m_law(Polynomial(m_coefficients), parameters...) {}

    const std::vector<double>& coefficients() const { return m_coefficients; }
    const Law& law() const { return m_law; }

private:
    std::vector<double> m_coefficients;
    Law m_law;  // refers to them
};

/// Kind 9: the polynomial for all x.
class CSpec1dIntPolynomElemXAll final : public CSpec1dPolynomElem<EverywhereLaw> {
public:
    explicit CSpec1dIntPolynomElemXAll(const std::vector<double>& coefficients);
    double Derivative(double x, int order) const override;
};

/// Kind 10: outside the range x is copied and shifted.
class CSpec1dIntPolynomElemXCopyExt : public CSpec1dPolynomElem<ShiftExtLaw> {
public:
    CSpec1dIntPolynomElemXCopyExt(const std::vector<double>& coefficients, const ArgumentRange& range);
    double Derivative(double x, int order) const final;
};

/// Kind 11: precise mass to apparent mass. A correction by parts per million so becomes one by a constant outside the
/// masses it was made for, which is the continuation of kind 10.
class CSpec1dIntPolynomElemGPXExt final : public CSpec1dIntPolynomElemXCopyExt {
public:
    using CSpec1dIntPolynomElemXCopyExt::CSpec1dIntPolynomElemXCopyExt;
};

/// Kind 12: coefficient i belongs to the power i / 2. Straight on outside the range, with the slope at the end. NaN
/// for a negative x inside the range.
class CSpec1dRealPolynomElemXDerivExt final : public CSpec1dPolynomElem<DerivExtLaw> {
public:
    CSpec1dRealPolynomElemXDerivExt(const std::vector<double>& coefficients, const ArgumentRange& range);
    double Derivative(double x, int order) const override;
};

}  // namespace kvan::math
