#pragma once

#include <calibration-core/interfaces/ICalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFactorySerialization.h>

namespace kvan::calibration::Transformation {

/// Stored forms of the families that `factory` can make. Holds nothing but the factory; cheap to make.
class CalibrationTransformatorFactorySerialization final : public ICalibrationTransformatorFactorySerialization {
public:
    /// With the shared factory.
    CalibrationTransformatorFactorySerialization();
    explicit CalibrationTransformatorFactorySerialization(
        std::shared_ptr<const ICalibrationTransformatorFactory> factory);

    std::shared_ptr<ICalibrationTransformator> DeserializeFromBlob(
        const std::vector<unsigned char>& blob) const override;
    void SerializeToBlob(const std::shared_ptr<ICalibrationTransformator>& transformator,
                         std::vector<unsigned char>& blob) const override;
    void SerializeReferenceToBlob(const std::shared_ptr<ICalibrationTransformator>& transformator,
                                  std::vector<unsigned char>& blob) const override;
    std::shared_ptr<ICalibrationTransformator> DeserializeFromString(const std::string& text) const override;
    std::string SerializeToString(const std::shared_ptr<ICalibrationTransformator>& transformator) const override;

private:
    std::shared_ptr<const ICalibrationTransformatorFactory> m_factory;
};

}  // namespace kvan::calibration::Transformation
