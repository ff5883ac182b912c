#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration::TemperatureCompensation {

/// Copies of the functional constants; null if none are held, and for KITE 2, which has none to give.
inline std::shared_ptr<ICalibrationConstantsFunctional> functionalConstantsOf(
    const ICalibrationTransformator& transformator) {
    return traitsOf(familyOf(transformator)).constants == HeldConstants::None ? nullptr
                                                                              : transformator.GetFunctionalConstants();
}

}  // namespace kvan::calibration::TemperatureCompensation
