#pragma once

#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationConstantsTOF2.h>
#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>

#include <utility>

namespace kvan::calibration::Constants {

/// The constants `Law` with what temperature compensation needs. Equal to plain constants of the same law, and to
/// compensated ones if these have the same temperatures, factors and mode besides.
template <class Law>
class TemperatureCompensated : public Law, public ICalibrationConstantsFunctionalTemperatureCompensation {
public:
    TemperatureCompensated() = default;
    explicit TemperatureCompensated(const Law& law) : Law(law) {}
    TemperatureCompensated(const Law& law, std::vector<double> temperatures, std::vector<double> factors,
                           ENUM_TEMPERATURE_COMPENSATION_MODE mode)
        : Law(law), m_measTemp(std::move(temperatures)), m_correctionFactors(std::move(factors)), m_mode(mode) {}

    bool IsEqual(const ICalibrationConstantsFunctional& other) const override;

    const std::vector<double>& GetMeasuredTemperatures() const override { return m_measTemp; }
    void SetMeasuredTemperatures(const std::vector<double>& temperatures) override {
        m_measTemp = temperatures;
        m_mode = TEMPERATURE_COMPENSATION_MEASURED;
    }
    const std::vector<double>& GetCorrectionFactors() const override { return m_correctionFactors; }
    void SetCorrectionFactors(const std::vector<double>& factors) override { m_correctionFactors = factors; }
    bool IsAdapted() const override {
        return m_mode == TEMPERATURE_COMPENSATION_ADAPTED_ONE || m_mode == TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL;
    }
    ENUM_TEMPERATURE_COMPENSATION_MODE GetCompensationMode() const override { return m_mode; }
    void SetCompensationMode(ENUM_TEMPERATURE_COMPENSATION_MODE mode) override { m_mode = mode; }

private:
    std::vector<double> m_measTemp;
    std::vector<double> m_correctionFactors;
    ENUM_TEMPERATURE_COMPENSATION_MODE m_mode = TEMPERATURE_COMPENSATION_NONE;
};

/// TOF1 constants with temperature compensation.
class CalibrationConstantsFunctionalTOF1TemperatureCompensation final
    : public TemperatureCompensated<CalibrationConstantsFunctionalTOF1> {
public:
    using TemperatureCompensated::TemperatureCompensated;

    std::shared_ptr<ICloneable> Clone() const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::CompensatedTof); }
    void Dump(std::ostream& sink) const override;
    void AdaptToReference(const ICalibrationConstantsFunctional& reference,
                          const std::vector<double>& referenceTemperatures,
                          const std::vector<double>& correctionFactors) override;
};

/// TOF2 constants with temperature compensation.
class CalibrationConstantsFunctionalTOF2TemperatureCompensation final
    : public TemperatureCompensated<CalibrationConstantsFunctionalTOF2> {
public:
    using TemperatureCompensated::TemperatureCompensated;

    std::shared_ptr<ICloneable> Clone() const override;
    int GetFunctionalTypeCode() const override { return codeOf(CalibrationFamily::CompensatedTof2); }
    void Dump(std::ostream& sink) const override;
    void AdaptToReference(const ICalibrationConstantsFunctional& reference,
                          const std::vector<double>& referenceTemperatures,
                          const std::vector<double>& correctionFactors) override;
};

}  // namespace kvan::calibration::Constants
