#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomial.h>

namespace kvan::calibration {

/// Correction of masses by a smooth function: the polynomial G of the coefficients leads from precise mass to apparent
/// mass, both m/z. It holds on the global mass range; beyond an end it is m + (G(end) - end), and everywhere G where
/// the ends are not in order. c0, c2, parent mass and argument range are kept, and no conversion uses them.
class ICalibrationPolynomialGPX : public ICalibrationPolynomial {
public:
    /// One less than there are coefficients; 0 without any.
    virtual int GetOrder() const = 0;
    virtual void SetCoefficients(const std::vector<double>& coefficients) = 0;
    virtual double GetC0() const = 0;
    virtual void SetC0(double value) = 0;
    virtual double GetC2() const = 0;
    virtual void SetC2(double value) = 0;
    /// (minMass, maxMass)
    virtual Range GetGlobalMassRange() const = 0;
    virtual void SetGlobalMassRange(const Range& range) = 0;
    /// Whether masses are corrected at all.
    virtual bool GetUse() const = 0;
    virtual void SetUse(bool use) = 0;
};

}  // namespace kvan::calibration
