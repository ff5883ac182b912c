#pragma once

#include <calibration-core/constants/FunctionalConstants.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

namespace kvan::calibration::Constants {

/// Law of a time-of-flight instrument, second generation: raw is a polynomial in t = sqrt(mass + c4). With C1 = 1e12 /
/// c1 the quadratic one is raw = t * t * c2 + t * sqrt(C1) + c0, the cubic one has t * t * t * c3 besides.
class CalibrationConstantsFunctionalTOF2 : public ICalibrationConstantsFunctional,
                                           public ICalibrationConstantsFunctionalTOF2,
                                           public ICalibrationConstantsFunctionalComputationCubic,
                                           public ICalibrationConstantsFunctionalComputationShift {
public:
    CalibrationConstantsFunctionalTOF2() = default;
    CalibrationConstantsFunctionalTOF2(double c0, double c1, double c2, double c3, double c4, int calibMode = 0)
        : m_stored(c0, c1, c2), m_c3(c3), m_c4(c4), m_calibMode(calibMode) {}

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    void SetCalibMode(int mode) override { m_calibMode = mode; }
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Tof2); }
    void ResetRawMode() override {}
    void Dump(std::ostream& sink) const override;

    double GetStoredC0() const override { return m_stored.c0; }
    void SetStoredC0(double value) override { m_stored.c0 = value; }
    double GetStoredC1() const override { return m_stored.c1; }
    void SetStoredC1(double value) override { m_stored.c1 = value; }
    double GetStoredC2() const override { return m_stored.c2; }
    void SetStoredC2(double value) override { m_stored.c2 = value; }
    double GetStoredC3() const override { return m_c3; }
    void SetStoredC3(double value) override { m_c3 = value; }

    double GetC0() const override { return m_stored.c0; }
    void SetC0(double value) override { m_stored.c0 = value; }
    double GetC1() const override;
    void SetC1(double value) override;
    double GetC2() const override { return m_stored.c2; }
    void SetC2(double value) override { m_stored.c2 = value; }
    bool GetQuadraticFlag() const override { return m_stored.quadraticFlag; }
    double GetD() const override;
    double GetC3() const override { return m_c3; }
    void SetC3(double value) override { m_c3 = value; }
    double GetShift() const override { return m_c4; }
    void SetShift(double value) override { m_c4 = value; }

private:
    QuadraticFunctionalConstants m_stored;
    double m_c3 = 0.0;
    double m_c4 = 0.0;
    int m_calibMode = 0;
};

}  // namespace kvan::calibration::Constants
