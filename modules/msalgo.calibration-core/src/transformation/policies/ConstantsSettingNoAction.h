#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Transformation {

/// For families whose two sets of constants do not depend on one another.
struct ConstantsSettingNoAction {
    static constexpr bool ChangesPhysical = false;

    /// Runs after either set was replaced, before the policies cache it. Each may be null.
    static void ConstantsSet(const ICalibrationConstantsFunctional*, ICalibrationConstantsPhysical*) {}
};

}  // namespace kvan::calibration::Transformation
