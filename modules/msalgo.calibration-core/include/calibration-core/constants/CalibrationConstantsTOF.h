#pragma once

#include <calibration-core/constants/FunctionalConstants.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Constants {

/// Law of a time-of-flight instrument: raw = sqrt(mass * C1) + C0 + mass * C2, where C1 = 1e12 / c1, and C0 and C2 are
/// stored as they are.
class CalibrationConstantsFunctionalTOF1 : public ICalibrationConstantsFunctional,
                                           public ICalibrationConstantsFunctionalTOF1,
                                           public ICalibrationConstantsFunctionalComputationQuadratic {
public:
    CalibrationConstantsFunctionalTOF1() = default;
    CalibrationConstantsFunctionalTOF1(double c0, double c1, double c2, int calibMode = 0)
        : m_stored(c0, c1, c2), m_calibMode(calibMode) {}

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    void SetCalibMode(int mode) override { m_calibMode = mode; }
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Tof); }
    void ResetRawMode() override {}
    void Dump(std::ostream& sink) const override;

    double GetStoredC0() const override { return m_stored.c0; }
    void SetStoredC0(double value) override { m_stored.c0 = value; }
    double GetStoredC1() const override { return m_stored.c1; }
    void SetStoredC1(double value) override { m_stored.c1 = value; }
    double GetStoredC2() const override { return m_stored.c2; }
    void SetStoredC2(double value) override { m_stored.c2 = value; }

    double GetC0() const override { return m_stored.c0; }
    void SetC0(double value) override { m_stored.c0 = value; }
    double GetC1() const override;
    void SetC1(double value) override;
    double GetC2() const override { return m_stored.c2; }
    void SetC2(double value) override { m_stored.c2 = value; }
    bool GetQuadraticFlag() const override { return m_stored.quadraticFlag; }
    double GetD() const override;

private:
    QuadraticFunctionalConstants m_stored;
    int m_calibMode = 0;
};

/// Time axis of a time-of-flight instrument: a0 is the time delay, a1 the time base.
class CalibrationConstantsPhysicalTOF final : public ICalibrationConstantsPhysical,
                                              public ICalibrationConstantsPhysicalLinear,
                                              public ICalibrationConstantsPhysicalTOF {
public:
    CalibrationConstantsPhysicalTOF() = default;
    CalibrationConstantsPhysicalTOF(double timeDelay, double timeBase) : m_timeDelay(timeDelay), m_timeBase(timeBase) {}

    std::shared_ptr<ICloneable> Clone() const override;
    bool IsEqual(const ICalibrationConstantsPhysical& other) const override;
    void AdaptRawStart(double rawStart) override;
    void AssimilateIndexOffset(double indexOffset) override;
    void Dump(std::ostream& sink) const override;

    double GetA0() const override { return m_timeDelay; }
    double GetA1() const override { return m_timeBase; }
    double GetTimeDelay() const override { return m_timeDelay; }
    void SetTimeDelay(double delay) override { m_timeDelay = delay; }
    double GetTimeBase() const override { return m_timeBase; }
    void SetTimeBase(double base) override { m_timeBase = base; }

private:
    double m_timeDelay = 0.0;
    double m_timeBase = 1.0;
};

}  // namespace kvan::calibration::Constants
