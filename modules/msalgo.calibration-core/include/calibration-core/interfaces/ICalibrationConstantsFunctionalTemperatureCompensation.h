#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

#include <vector>

namespace kvan::calibration {

/// What became of the temperatures: 0 no compensation, 2 measured and not yet adapted, 1 and 3 adapted to a reference
/// with one temperature or with several.
enum ENUM_TEMPERATURE_COMPENSATION_MODE {
    TEMPERATURE_COMPENSATION_NONE = 0,
    TEMPERATURE_COMPENSATION_ADAPTED_ONE = 1,
    TEMPERATURE_COMPENSATION_MEASURED = 2,
    TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL = 3,
};

/// Time-of-flight constants that know the temperatures, in degrees, at which their spectrum was measured, and
/// correction factors in parts per million a degree. The law is that of the plain constants.
class ICalibrationConstantsFunctionalTemperatureCompensation {
public:
    virtual const std::vector<double>& GetMeasuredTemperatures() const = 0;
    /// Sets the compensation mode to 2 besides.
    virtual void SetMeasuredTemperatures(const std::vector<double>& temperatures) = 0;
    virtual const std::vector<double>& GetCorrectionFactors() const = 0;
    virtual void SetCorrectionFactors(const std::vector<double>& factors) = 0;

    /// Whether the mode is 1 or 3.
    virtual bool IsAdapted() const = 0;
    virtual ENUM_TEMPERATURE_COMPENSATION_MODE GetCompensationMode() const = 0;
    virtual void SetCompensationMode(ENUM_TEMPERATURE_COMPENSATION_MODE mode) = 0;

    /// Replaces the law by that of `reference` at the temperatures measured here: with
    /// k = sum((measured - referenceTemperature) * correctionFactor) / 1e6 + 1.0 all coefficients but C0 and the shift
    /// are the reference's divided by k. The arguments are those of the reference calibration.
    ///
    /// Throws `std::invalid_argument` for a reference of another family, `std::runtime_error` without measured
    /// temperatures. When the vectors are not all of one size, TOF1 constants change their mode alone, TOF2 constants
    /// throw `std::runtime_error` and stay unchanged.
    virtual void AdaptToReference(const ICalibrationConstantsFunctional& reference,
                                  const std::vector<double>& referenceTemperatures,
                                  const std::vector<double>& correctionFactors) = 0;

    /// Throws `std::runtime_error` "ICalibrationConstantsFunctionalTemperatureCompensation::compensationModeFromInt: No
    /// such compensation mode: " for anything but 0 to 3.
    static ENUM_TEMPERATURE_COMPENSATION_MODE compensationModeFromInt(int mode);

protected:
    ~ICalibrationConstantsFunctionalTemperatureCompensation() = default;
};

}  // namespace kvan::calibration
