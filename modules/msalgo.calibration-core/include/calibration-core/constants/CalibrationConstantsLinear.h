#pragma once

#include <calibration-core/constants/FunctionalConstants.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Constants {

/// A straight line: mass = raw * c1 + c0. The computation view is the stored one.
class CalibrationConstantsFunctionalLinear final : public ICalibrationConstantsFunctional,
                                                   public ICalibrationConstantsFunctionalLinear,
                                                   public ICalibrationConstantsFunctionalComputationLinear {
public:
    CalibrationConstantsFunctionalLinear() = default;
    CalibrationConstantsFunctionalLinear(double c0, double c1, int calibMode = 0)
        : m_stored{c0, c1}, m_calibMode(calibMode) {}

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    void SetCalibMode(int mode) override { m_calibMode = mode; }
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Linear); }
    void ResetRawMode() override {}
    void Dump(std::ostream& sink) const override;

    double GetStoredC0() const override { return m_stored.c0; }
    void SetStoredC0(double value) override { m_stored.c0 = value; }
    double GetStoredC1() const override { return m_stored.c1; }
    void SetStoredC1(double value) override { m_stored.c1 = value; }

    double GetC0() const override { return m_stored.c0; }
    void SetC0(double value) override { m_stored.c0 = value; }
    double GetC1() const override { return m_stored.c1; }
    void SetC1(double value) override { m_stored.c1 = value; }

private:
    LinearFunctionalConstants m_stored;
    int m_calibMode = 0;
};

/// The line between index and raw value as it stands.
class CalibrationConstantsPhysicalLinear final : public ICalibrationConstantsPhysical,
                                                 public ICalibrationConstantsPhysicalLinear {
public:
    CalibrationConstantsPhysicalLinear() = default;
    CalibrationConstantsPhysicalLinear(double a0, double a1) : m_a0(a0), m_a1(a1) {}

    std::shared_ptr<ICloneable> Clone() const override;
    bool IsEqual(const ICalibrationConstantsPhysical& other) const override;
    void AdaptRawStart(double rawStart) override;
    void AssimilateIndexOffset(double indexOffset) override { m_a0 = m_a0 + indexOffset * m_a1; }
    void Dump(std::ostream& sink) const override;

    double GetA0() const override { return m_a0; }
    double GetA1() const override { return m_a1; }

private:
    double m_a0 = 0.0;
    double m_a1 = 1.0;
};

}  // namespace kvan::calibration::Constants
