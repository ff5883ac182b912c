#pragma once

#include <calibration-core/constants/FunctionalConstants.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Constants {

/// Law of an ion trap: mass = raw * raw * c2 + raw * c1 + c0. The computation view is the stored one.
class CalibrationConstantsFunctionalPaladin final : public ICalibrationConstantsFunctional,
                                                    public ICalibrationConstantsFunctionalPaladin,
                                                    public ICalibrationConstantsFunctionalComputationQuadratic {
public:
    CalibrationConstantsFunctionalPaladin() = default;
    CalibrationConstantsFunctionalPaladin(double c0, double c1, double c2, int calibMode = 0)
        : m_stored(c0, c1, c2), m_calibMode(calibMode) {}

    std::shared_ptr<ICloneable> Clone() const override;
    int GetCalibMode() const override { return m_calibMode; }
    void SetCalibMode(int mode) override { m_calibMode = mode; }
    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::Paladin); }
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
    double GetC1() const override { return m_stored.c1; }
    void SetC1(double value) override { m_stored.c1 = value; }
    double GetC2() const override { return m_stored.c2; }
    void SetC2(double value) override { m_stored.c2 = value; }
    bool GetQuadraticFlag() const override { return m_stored.quadraticFlag; }
    double GetD() const override { return m_stored.c1 * m_stored.c1; }

private:
    QuadraticFunctionalConstants m_stored;
    int m_calibMode = 0;
};

/// Raw mass scale of an ion trap: a0 = begin / measurements per raw mass, a1 = 1.0 / measurements per raw mass.
class CalibrationConstantsPhysicalPaladin final : public ICalibrationConstantsPhysical,
                                                  public ICalibrationConstantsPhysicalLinear,
                                                  public ICalibrationConstantsPhysicalPaladin {
public:
    CalibrationConstantsPhysicalPaladin() = default;
    CalibrationConstantsPhysicalPaladin(double beginRawMass, double measurementsPerRawMass)
        : m_beginRawMass(beginRawMass), m_measurementsPerRawMass(measurementsPerRawMass) {}

    std::shared_ptr<ICloneable> Clone() const override;
    bool IsEqual(const ICalibrationConstantsPhysical& other) const override;
    void AdaptRawStart(double rawStart) override;
    void AssimilateIndexOffset(double indexOffset) override { m_beginRawMass = m_beginRawMass + indexOffset; }
    void Dump(std::ostream& sink) const override;

    double GetA0() const override { return m_beginRawMass / m_measurementsPerRawMass; }
    double GetA1() const override { return 1.0 / m_measurementsPerRawMass; }
    double GetBeginRawMass() const override { return m_beginRawMass; }
    void SetBeginRawMass(double begin) override { m_beginRawMass = begin; }
    double GetMeasurementsPerRawMass() const override { return m_measurementsPerRawMass; }
    void SetMeasurementsPerRawMass(double count) override { m_measurementsPerRawMass = count; }

private:
    double m_beginRawMass = 0.0;
    double m_measurementsPerRawMass = 1.0;
};

}  // namespace kvan::calibration::Constants
