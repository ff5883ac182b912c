#pragma once

#include <calibration-core/constants/CalibrationConstantsTOF.h>

namespace kvan::calibration::Constants {

/// TOF1 constants under the code of the family that is built around them.
class CalibrationConstantsFunctionalWrappedTOF1 final : public CalibrationConstantsFunctionalTOF1 {
public:
    CalibrationConstantsFunctionalWrappedTOF1(const CalibrationConstantsFunctionalTOF1& constants,
                                              CalibrationFamily family)
        : CalibrationConstantsFunctionalTOF1(constants), m_family(family) {}

    std::shared_ptr<ICloneable> Clone() const override {
        return std::make_shared<CalibrationConstantsFunctionalWrappedTOF1>(*this);
    }
    int GetFunctionalTypeCode() const override { return codeOf(m_family); }

private:
    CalibrationFamily m_family;
};

/// `constants` under the code of that family; others than TOF1 ones, and none, as they are.
inline std::shared_ptr<ICalibrationConstantsFunctional> wrappedTof1(
    const std::shared_ptr<ICalibrationConstantsFunctional>& constants, CalibrationFamily family) {
    const auto tof = std::dynamic_pointer_cast<const CalibrationConstantsFunctionalTOF1>(constants);
    if (!tof)
        return constants;
    return std::make_shared<CalibrationConstantsFunctionalWrappedTOF1>(*tof, family);
}

}  // namespace kvan::calibration::Constants
