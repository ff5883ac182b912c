#include "transformation/LawMaking.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMInverse.h"
#include "transformation/policies/RMLinear.h"

#include <calibration-core/constants/CalibrationConstantsLinear.h>

// The straight line, over an axis that is a straight line too. The way back, raw = (mass - C0) / C1, divides by the
// slope: one of 0.0 gives infinities or NaN, no failure.
namespace kvan::calibration::Transformation {

/// mass = raw * C1 + C0, the law of `CalibrationTransformatorPaladinLinear` with constants of its own.
class CalibrationTransformatorLinear final
    : public Transformator<CalibrationTransformatorLinear, RMInverse<RMLinear<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorLinear";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Linear;
};

namespace {

using StoredAxis = Constants::CalibrationConstantsPhysicalLinear;
using StoredLaw = Constants::CalibrationConstantsFunctionalLinear;

std::shared_ptr<ICalibrationTransformator> make(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical) {
    // One class whatever the slope is.
    return adopt<CalibrationTransformatorLinear, StoredAxis, StoredLaw>(std::move(functional), std::move(physical));
}

}  // namespace

}  // namespace kvan::calibration::Transformation

namespace kvan::calibration {

const LawOfConstants g_linearLaw = {
    Transformation::offers<ICalibrationConstantsFunctionalLinear>,
    Transformation::offers<ICalibrationConstantsPhysicalLinear>,
    "kvan::calibration::Transformation::CalibrationTransformatorFactory::createTransformatorLinear: funcConsts is not "
    "of type ICalibrationConstantsFunctionalLinear",
    Transformation::make};

}  // namespace kvan::calibration
