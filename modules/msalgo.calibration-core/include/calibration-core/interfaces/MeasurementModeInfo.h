#pragma once

#include <calibration-core/interfaces/IMeasurementModeInfo.h>

namespace kvan::calibration::Transformation {

/// The one implementation of `IMeasurementModeInfo`; everything is unknown (255) at first.
class MeasurementModeInfo final : public IMeasurementModeInfo {
public:
    static constexpr std::uint8_t Unknown = 255;

    MeasurementModeInfo() = default;
    MeasurementModeInfo(std::uint8_t polarity, std::uint8_t acquisitionMode, std::uint8_t scanMode,
                        std::uint8_t msmsLevel)
        : m_polarity(polarity), m_acquisitionMode(acquisitionMode), m_scanMode(scanMode), m_msmsLevel(msmsLevel) {}

    std::shared_ptr<ICloneable> Clone() const override { return std::make_shared<MeasurementModeInfo>(*this); }

    std::uint8_t GetPolarity() const override { return m_polarity; }
    void SetPolarity(std::uint8_t polarity) override { m_polarity = polarity; }
    std::uint8_t GetAcquisitionMode() const override { return m_acquisitionMode; }
    void SetAcquisitionMode(std::uint8_t mode) override { m_acquisitionMode = mode; }
    std::uint8_t GetScanMode() const override { return m_scanMode; }
    void SetScanMode(std::uint8_t mode) override { m_scanMode = mode; }
    std::uint8_t GetMSMSLevel() const override { return m_msmsLevel; }
    void SetMSMSLevel(std::uint8_t level) override { m_msmsLevel = level; }

    bool IsComplete() const override;
    void Dump(std::ostream& sink) const override;

private:
    std::uint8_t m_polarity = Unknown;
    std::uint8_t m_acquisitionMode = Unknown;
    std::uint8_t m_scanMode = Unknown;
    std::uint8_t m_msmsLevel = Unknown;
};

}  // namespace kvan::calibration::Transformation
