#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialKITE.h>

namespace kvan::calibration::Constants {

/// The law at the calibration parent mass, adapted to the parent mass of the spectrum: with rho the ratio of the two
/// masses, 1 unless both are above 1e-12, coefficient i is K_i * pow(rho, 1.0 - i * 0.5). At fixed potentials masses
/// times rho mean times times sqrt(rho).
class CalibrationPolynomialKITE1 final : public ICalibrationPolynomialKITE1 {
public:
    /// As they are stored.
    struct Numbers {
        double parentMass = 0.0;
        double correctionTime = 0.0;
        double kiteTime = 0.0;
        double calibrationParentMass = 0.0;
        Range calibTimeRange{};
        IndexRange indexRange{};
        bool ignoreIndexBounds = false;
        std::vector<double> coefficients{};  ///< K, at the calibration parent mass
    };

    explicit CalibrationPolynomialKITE1(Numbers numbers);

    std::shared_ptr<ICloneable> Clone() const override;
    double GetParentMass() const override { return m_numbers.parentMass; }
    void SetParentMass(double mass) override;
    /// The calib time range at the current parent mass.
    Range GetArgRange() const override;
    const std::vector<double>& GetCoefficients() const override { return m_coefficients; }
    bool IsEqual(const ICalibrationPolynomial& other) const override;
    void Dump(std::ostream& sink) const override;

    double GetCalibrationParentMass() const override { return m_numbers.calibrationParentMass; }
    IndexRange GetIndexRange() const override { return m_numbers.indexRange; }
    bool GetIgnoreIndexBounds() const override { return m_numbers.ignoreIndexBounds; }
    const std::vector<double>& GetCalibrationCoefficients() const override { return m_numbers.coefficients; }
    double GetCorrectionTime() const override { return m_numbers.correctionTime; }
    double GetKiteTime() const override { return m_numbers.kiteTime; }
    Range GetCalibTimeRange() const override { return m_numbers.calibTimeRange; }

private:
    double massRatio() const;
    void adapt();

    Numbers m_numbers;
    std::vector<double> m_coefficients;  // k
};

}  // namespace kvan::calibration::Constants
