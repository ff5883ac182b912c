#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::TemperatureCompensation {

/// A copy of `transformator` whose TOF1 constants carry those measured temperatures and correction factors besides, in
/// mode 2; corrected masses stay corrected. Throws `std::runtime_error` "Already contains temp-comp info." for
/// constants that carry some, "TOF2+GPX not supported." for TOF2 with corrected masses and "Non-supported strategy."
/// for any other family.
std::shared_ptr<ICalibrationTransformator> addTemperatureCompensationInfo(
    const std::shared_ptr<ICalibrationTransformator>& transformator, const std::vector<double>& temperatures,
    const std::vector<double>& factors);

}  // namespace kvan::calibration::TemperatureCompensation
