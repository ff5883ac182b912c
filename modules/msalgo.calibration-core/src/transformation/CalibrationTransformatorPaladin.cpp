#include "transformation/LawMaking.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMInverse.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"

#include <calibration-core/constants/CalibrationConstantsPaladin.h>

// Laws of ion traps: mass is a polynomial in raw, so that the way from mass to raw is the one that has to be solved.
// The class is chosen by c2 == 0.0, exactly: the line needs no root.
namespace kvan::calibration::Transformation {

/// mass = raw * C1 + C0.
class CalibrationTransformatorPaladinLinear final
    : public Transformator<CalibrationTransformatorPaladinLinear, RMInverse<RMLinear<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorPaladinLinear";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Paladin;
};

/// mass = raw * raw * C2 + raw * C1 + C0. Only the way from mass to raw value can fail.
class CalibrationTransformatorPaladinQuadratic final
    : public Transformator<CalibrationTransformatorPaladinQuadratic, RMInverse<RMQuadratic<NoSquareRoot>>, RILinear,
                           ConstantsSettingNoAction> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorPaladinQuadratic";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Paladin;
};

namespace {

using StoredAxis = Constants::CalibrationConstantsPhysicalPaladin;
using StoredLaw = Constants::CalibrationConstantsFunctionalPaladin;

std::shared_ptr<ICalibrationTransformator> make(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical) {
    const auto& law = knownView<ICalibrationConstantsFunctionalPaladin, StoredLaw>(*functional);
    return law.GetStoredC2() == 0.0 ? adopt<CalibrationTransformatorPaladinLinear, StoredAxis, StoredLaw>(
                                          std::move(functional), std::move(physical))
                                    : adopt<CalibrationTransformatorPaladinQuadratic, StoredAxis, StoredLaw>(
                                          std::move(functional), std::move(physical));
}

}  // namespace

}  // namespace kvan::calibration::Transformation

namespace kvan::calibration {

const LawOfConstants g_paladinLaw = {
    Transformation::offers<ICalibrationConstantsFunctionalPaladin>,
    Transformation::offers<ICalibrationConstantsPhysicalPaladin>,
    "kvan::calibration::Transformation::CalibrationTransformatorFactory::createTransformatorTrap: funcConsts is not of "
    "type ICalibrationConstantsFunctionalPaladin",
    Transformation::make};

}  // namespace kvan::calibration
