#pragma once

#include <calibration-core/constants/CalibrationConstantsTOF.h>

namespace kvan::calibration::Constants {

/// TOF1 constants under the type code of the family that is built around them.
class CalibrationConstantsFunctionalWrappedTOF1 final : public CalibrationConstantsFunctionalTOF1 {
public:
    CalibrationConstantsFunctionalWrappedTOF1(const CalibrationConstantsFunctionalTOF1& constants, int typeCode)
        : CalibrationConstantsFunctionalTOF1(constants), m_typeCode(typeCode) {}

    std::shared_ptr<ICloneable> Clone() const override {
        return std::make_shared<CalibrationConstantsFunctionalWrappedTOF1>(*this);
    }
    int GetFunctionalTypeCode() const override { return m_typeCode; }

private:
    int m_typeCode;
};

/// `constants` under that code; others than TOF1 ones, and none, as they are.
inline std::shared_ptr<ICalibrationConstantsFunctional> wrappedTof1(
    const std::shared_ptr<ICalibrationConstantsFunctional>& constants, int typeCode) {
    const auto tof = std::dynamic_pointer_cast<const CalibrationConstantsFunctionalTOF1>(constants);
    if (!tof)
        return constants;
    return std::make_shared<CalibrationConstantsFunctionalWrappedTOF1>(*tof, typeCode);
}

}  // namespace kvan::calibration::Constants
