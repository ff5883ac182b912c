#include "transformation/LawMaking.h"
#include "transformation/TofTransformator.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>

// Laws of time of flight, raw as a polynomial in the root of mass, continued to negative masses as an odd function
// about C0. The class is chosen by c2 == 0.0, exactly: the line has no root that could fail.
namespace kvan::calibration::Transformation {

/// raw = SignedSqrt(mass * C1) + C0. A raw value before C0 gives a negative mass.
class CalibrationTransformatorTOFLinear final
    : public TofTransformator<CalibrationTransformatorTOFLinear, RMLinear<SquareRoot>, 1> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOFLinear";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Tof;
};

/// raw = mass * C2 + SignedSqrt(mass * C1) + C0. Fails where the curve has no real mass.
class CalibrationTransformatorTOFQuadratic final
    : public TofTransformator<CalibrationTransformatorTOFQuadratic, RMQuadratic<SquareRoot>, 2> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOFQuadratic";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Tof;
};

namespace {

using StoredAxis = Constants::CalibrationConstantsPhysicalTOF;
using StoredLaw = Constants::CalibrationConstantsFunctionalTOF1;
using CompensatedLaw = Constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation;

std::shared_ptr<ICalibrationTransformator> make(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical) {
    const auto& law = knownView<ICalibrationConstantsFunctionalTOF1, StoredLaw, CompensatedLaw>(*functional);
    return law.GetStoredC2() == 0.0
               ? adopt<CalibrationTransformatorTOFLinear, StoredAxis, StoredLaw, CompensatedLaw>(std::move(functional),
                                                                                                 std::move(physical))
               : adopt<CalibrationTransformatorTOFQuadratic, StoredAxis, StoredLaw, CompensatedLaw>(
                     std::move(functional), std::move(physical));
}

}  // namespace

}  // namespace kvan::calibration::Transformation

namespace kvan::calibration {

const LawOfConstants g_tofLaw = {
    Transformation::offers<ICalibrationConstantsFunctionalTOF1>,
    Transformation::offers<ICalibrationConstantsPhysicalTOF>,
    "kvan::calibration::Transformation::CalibrationTransformatorFactory::createTransformatorTof: funcConsts is not of "
    "type ICalibrationConstantsFunctionalTOF1",
    Transformation::make};

}  // namespace kvan::calibration
