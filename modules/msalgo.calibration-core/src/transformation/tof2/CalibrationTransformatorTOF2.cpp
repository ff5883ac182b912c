#include "serialization/TofStoredForms.h"
#include "transformation/NewTransformator.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMCubic.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"
#include "transformation/policies/RMShift.h"

namespace kvan::calibration::Transformation {

/// raw = SignedSqrt((mass + shift) * C1) + C0.
class CalibrationTransformatorTOF2Linear final
    : public Transformator<CalibrationTransformatorTOF2Linear, RMShift<RMLinear<SquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Linear";
    using StoredForm = Tof2StoredForm;
};

/// raw = (mass + shift) * C2 + SignedSqrt((mass + shift) * C1) + C0. Fails where the curve has no real mass.
class CalibrationTransformatorTOF2Quadratic final
    : public Transformator<CalibrationTransformatorTOF2Quadratic, RMShift<RMQuadratic<SquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Quadratic";
    using StoredForm = Tof2StoredForm;
};

/// raw = ((t * C3 + C2) * t + B) * t + C0 with t = SignedSqrt(mass + shift). The way back is approximate.
class CalibrationTransformatorTOF2Cubic final
    : public Transformator<CalibrationTransformatorTOF2Cubic, RMShift<RMCubic<SquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Cubic";
    using StoredForm = Tof2StoredForm;
};

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Linear>() {
    return std::make_shared<CalibrationTransformatorTOF2Linear>();
}

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Quadratic>() {
    return std::make_shared<CalibrationTransformatorTOF2Quadratic>();
}

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOF2Cubic>() {
    return std::make_shared<CalibrationTransformatorTOF2Cubic>();
}

}  // namespace kvan::calibration::Transformation
