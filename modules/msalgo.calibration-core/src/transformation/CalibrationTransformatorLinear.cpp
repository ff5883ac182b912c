#include "serialization/StoredBlocks.h"
#include "transformation/NewTransformator.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMInverse.h"
#include "transformation/policies/RMLinear.h"

namespace kvan::calibration::Transformation {

/// mass = raw * C1 + C0, the law of `CalibrationTransformatorPaladinLinear` with constants of its own.
class CalibrationTransformatorLinear final
    : public Transformator<CalibrationTransformatorLinear, RMInverse<RMLinear<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorLinear";
    using StoredForm = StoredBlocks<tqclegacy::CALIBRATION::LINEARCalibrationBlock>;
};

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorLinear>() {
    return std::make_shared<CalibrationTransformatorLinear>();
}

}  // namespace kvan::calibration::Transformation
