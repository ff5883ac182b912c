#pragma once

#include <calibration-core/interfaces/ICloneable.h>

#include <cstdint>
#include <iosfwd>

namespace kvan::calibration {

/// How a spectrum was acquired, so far as it selects a reference calibration. Each of the four bytes is 255 when
/// unknown. A plain value: one thread at a time while a setter runs.
class IMeasurementModeInfo : public ICloneable {
public:
    /// As `EPolarity`.
    virtual std::uint8_t GetPolarity() const = 0;
    virtual void SetPolarity(std::uint8_t polarity) = 0;
    /// 1 TOF linear, 2 TOF reflector.
    virtual std::uint8_t GetAcquisitionMode() const = 0;
    virtual void SetAcquisitionMode(std::uint8_t mode) = 0;
    /// 0 MS, 1 MS-HiRes, 2 MSMS, 3 MSMS-HiRes.
    virtual std::uint8_t GetScanMode() const = 0;
    virtual void SetScanMode(std::uint8_t mode) = 0;
    /// 0 for MS^1, n - 1 for MS^n.
    virtual std::uint8_t GetMSMSLevel() const = 0;
    virtual void SetMSMSLevel(std::uint8_t level) = 0;

    /// Whether none of the four is 255.
    virtual bool IsComplete() const = 0;

    /// The line of a transformator's dump.
    virtual void Dump(std::ostream& sink) const = 0;
};

}  // namespace kvan::calibration
