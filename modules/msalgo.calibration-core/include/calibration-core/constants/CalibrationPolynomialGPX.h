#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialGPX.h>

namespace kvan::calibration::Constants {

/// The one implementation of `ICalibrationPolynomialGPX`.
class CalibrationPolynomialGPX final : public ICalibrationPolynomialGPX {
public:
    CalibrationPolynomialGPX() = default;
    /// Coefficients in ascending order of power.
    CalibrationPolynomialGPX(std::vector<double> coefficients, double c0, double c2, double minMass, double maxMass,
                             bool use)
        : m_coefficients(std::move(coefficients)), m_c0(c0), m_c2(c2), m_massRange(minMass, maxMass), m_use(use) {}

    std::shared_ptr<ICloneable> Clone() const override;

    double GetParentMass() const override { return m_parentMass; }
    /// Has no effect on the coefficients.
    void SetParentMass(double mass) override { m_parentMass = mass; }
    Range GetArgRange() const override { return m_argRange; }
    void SetArgRange(const Range& range) { m_argRange = range; }
    const std::vector<double>& GetCoefficients() const override { return m_coefficients; }
    bool IsEqual(const ICalibrationPolynomial& other) const override;
    void Dump(std::ostream& sink) const override;

    int GetOrder() const override;
    void SetCoefficients(const std::vector<double>& coefficients) override { m_coefficients = coefficients; }
    double GetC0() const override { return m_c0; }
    void SetC0(double value) override { m_c0 = value; }
    double GetC2() const override { return m_c2; }
    void SetC2(double value) override { m_c2 = value; }
    Range GetGlobalMassRange() const override { return m_massRange; }
    void SetGlobalMassRange(const Range& range) override { m_massRange = range; }
    bool GetUse() const override { return m_use; }
    void SetUse(bool use) override { m_use = use; }

private:
    std::vector<double> m_coefficients;
    double m_c0 = 0.0;
    double m_c2 = 0.0;
    Range m_massRange{0.0, 0.0};
    double m_parentMass = 0.0;
    Range m_argRange{0.0, 0.0};
    bool m_use = false;
};

}  // namespace kvan::calibration::Constants
