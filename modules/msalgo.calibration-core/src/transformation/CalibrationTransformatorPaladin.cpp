#include "serialization/StoredBlocks.h"
#include "transformation/NewTransformator.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMInverse.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"

namespace kvan::calibration::Transformation {

/// mass = raw * C1 + C0.
class CalibrationTransformatorPaladinLinear final
    : public Transformator<CalibrationTransformatorPaladinLinear, RMInverse<RMLinear<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorPaladinLinear";
    using StoredForm = StoredBlocks<tqclegacy::CALIBRATION::IonTrapCalibrationBlock>;
};

/// mass = raw * raw * C2 + raw * C1 + C0. Only the way from mass to raw value can fail.
class CalibrationTransformatorPaladinQuadratic final
    : public Transformator<CalibrationTransformatorPaladinQuadratic, RMInverse<RMQuadratic<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorPaladinQuadratic";
    using StoredForm = StoredBlocks<tqclegacy::CALIBRATION::IonTrapCalibrationBlock>;
};

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinLinear>() {
    return std::make_shared<CalibrationTransformatorPaladinLinear>();
}

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorPaladinQuadratic>() {
    return std::make_shared<CalibrationTransformatorPaladinQuadratic>();
}

}  // namespace kvan::calibration::Transformation
