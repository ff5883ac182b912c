#pragma once

#include <calibration-core/interfaces/ICalibrationTemperatureCompensator.h>

namespace kvan::calibration::TemperatureCompensation {

/// The one implementation of `ICalibrationTemperatureCompensator`.
class CalibrationTemperatureCompensator final : public ICalibrationTemperatureCompensator {
public:
    TransformatorPtr GetReferenceTransformator() const override { return m_reference; }
    void SetReferenceTransformator(const TransformatorPtr& reference) override { m_reference = reference; }
    const Values& GetReferenceTemperatures() const override { return m_referenceTemperatures; }
    void SetReferenceTemperatures(const Values& temperatures) override { m_referenceTemperatures = temperatures; }
    const Values& GetCorrectionFactors() const override { return m_correctionFactors; }
    void SetCorrectionFactors(const Values& factors) override { m_correctionFactors = factors; }
    TransformatorPtr GetTransformator() const override { return m_transformator; }
    void SetTransformator(const TransformatorPtr& transformator) override { m_transformator = transformator; }

    TransformatorPtr Compensate(const TransformatorPtr& transformator) const override;
    void Dump(std::ostream& sink) const override;

private:
    TransformatorPtr m_reference;
    Values m_referenceTemperatures;
    Values m_correctionFactors;
    TransformatorPtr m_transformator;
};

}  // namespace kvan::calibration::TemperatureCompensation
