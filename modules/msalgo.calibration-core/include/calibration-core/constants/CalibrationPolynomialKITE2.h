#pragma once

#include <calibration-core/constants/CalibrationPolynomialSimple.h>
#include <calibration-core/interfaces/ICalibrationPolynomialKITE.h>

namespace kvan::calibration::Constants {

/// Polynomials for several parent masses, out of which one is made for the parent mass of the spectrum, and a global
/// polynomial between mass and w^2, the square of their argument.
///
/// The one for parent mass M is that of the nearest parent, scaled to M. If the interpolation mode is not 0 and M
/// lies between two parents, both are scaled to M and mixed coefficient by coefficient with the weight
/// (M - M1) / (M2 - M1), in modes 2 and 3 the same of roots; the range is what is common to both. With VC0 coefficients
/// and another mode than 3, coefficient 0 is their polynomial at sqrt(M).
class CalibrationPolynomialKITE2 final : public ICalibrationPolynomialKITE {
public:
    /// As they are stored.
    struct Numbers {
        double parentMass = 0.0;
        double referenceTime = 0.0;       ///< base of the raw values
        double measuredParentMass = 0.0;  ///< the two at calibration; kept and written, not used
        double measuredReferenceTime = 0.0;
        IndexRange indexRange{};
        bool ignoreIndexBounds = false;
        int interpolationMode = 0;
        std::vector<CalibrationPolynomialSimple> parents{};  ///< in strictly ascending order of parent mass
        CalibrationPolynomialSimple global{};
        std::vector<double> vc0{};
    };

    /// Throws `std::invalid_argument` without parents, and `std::runtime_error` "Parent mass M2 must be greater than
    /// M1." where neighbours that are mixed stand in another order.
    explicit CalibrationPolynomialKITE2(Numbers numbers);

    std::shared_ptr<ICloneable> Clone() const override;
    double GetParentMass() const override { return m_numbers.parentMass; }
    void SetParentMass(double mass) override;
    Range GetArgRange() const override { return {m_current.argLow, m_current.argHigh}; }
    const std::vector<double>& GetCoefficients() const override { return m_current.coefficients; }
    bool IsEqual(const ICalibrationPolynomial& other) const override;
    void Dump(std::ostream& sink) const override;

    double GetCalibrationParentMass() const override { return m_numbers.measuredParentMass; }
    IndexRange GetIndexRange() const override { return m_numbers.indexRange; }
    bool GetIgnoreIndexBounds() const override { return m_numbers.ignoreIndexBounds; }

    const Numbers& GetNumbers() const { return m_numbers; }
    /// For the current parent mass.
    const CalibrationPolynomialSimple& GetCurrentPolynomial() const { return m_current; }

private:
    void prepare(Numbers numbers);

    Numbers m_numbers;
    CalibrationPolynomialSimple m_current;
};

}  // namespace kvan::calibration::Constants
