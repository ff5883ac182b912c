#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>
#include <calibration-core/interfaces/ICalibrationConstantsPhysical.h>

namespace kvan::calibration::Transformation {

/// Carries raw mode and calibration mode of FTMS constants from the functional to the physical ones, whose line
/// depends on them.
struct ConstantsSettingAdjustForFTMS {
    static constexpr bool ChangesPhysical = true;

    template <class Functional, class Physical>
    static void ConstantsSet(const Functional* functional, Physical* physical) {
        const auto* const law = dynamic_cast<const ICalibrationConstantsFunctionalFTMS*>(functional);
        auto* const array = dynamic_cast<ICalibrationConstantsPhysicalFTMS*>(physical);
        if (law == nullptr || array == nullptr)
            return;
        array->SetFTMSRawMode(law->GetFTMSRawMode());
        array->SetCalibMode(functional->GetCalibMode());
    }
};

}  // namespace kvan::calibration::Transformation
