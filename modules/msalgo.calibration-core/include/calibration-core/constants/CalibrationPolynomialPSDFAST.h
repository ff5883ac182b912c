#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialPSD.h>

namespace kvan::calibration::Constants {

/// Coefficient i of the polynomial in the root of the apparent mass is pow(parent mass / calibration mass,
/// 1.0 - i * 0.5) * (sum * 0.001 + USegment) * SPC_i, where sum is that of pow(USegment * 1000.0, i * 0.5) * OCP_i.
class CalibrationPolynomialPSDFAST final : public ICalibrationPolynomialPSDFAST {
public:
    /// As they are stored.
    struct Numbers {
        double uRefFull = 0.0;
        double uSegment = 0.0;
        double calibrationMass = 0.0;
        double parentMass = 0.0;
        double minArg = 0.0;  ///< of the apparent mass
        double maxArg = 0.0;
        std::vector<double> spc{};
        std::vector<double> ocp{};
        std::vector<double> classic{};  ///< of the classic form; kept and written, not used
    };

    /// Throws what `ComputePolynomialCoefficients` throws.
    explicit CalibrationPolynomialPSDFAST(Numbers numbers);

    std::shared_ptr<ICloneable> Clone() const override;
    double GetParentMass() const override { return m_numbers.parentMass; }
    void SetParentMass(double mass) override;
    Range GetArgRange() const override { return {m_numbers.minArg, m_numbers.maxArg}; }
    const std::vector<double>& GetCoefficients() const override { return m_coefficients; }
    bool IsEqual(const ICalibrationPolynomial& other) const override;
    void Dump(std::ostream& sink) const override;

    double GetCalibrationMass() const override { return m_numbers.calibrationMass; }
    double GetUSegment() const override { return m_numbers.uSegment; }
    double GetURefFull() const override { return m_numbers.uRefFull; }

    const std::vector<double>& GetSPCCoefficients() const override { return m_numbers.spc; }
    const std::vector<double>& GetOCPCoefficients() const override { return m_numbers.ocp; }
    void ComputePolynomialCoefficients() override;

    const Numbers& GetNumbers() const { return m_numbers; }

private:
    Numbers m_numbers;
    std::vector<double> m_coefficients;
};

}  // namespace kvan::calibration::Constants
