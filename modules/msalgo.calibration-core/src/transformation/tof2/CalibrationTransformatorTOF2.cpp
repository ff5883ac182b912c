#include "transformation/LawMaking.h"
#include "transformation/TofTransformator.h"
#include "transformation/policies/RMCubic.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"
#include "transformation/policies/RMShift.h"
#include "transformation/tof2/Tof2CubicRange.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>

// Laws of the second generation, raw as a polynomial of degree 1, 2 or 3 in t = SignedSqrt(mass + shift). The class is
// chosen by the highest coefficient that is not 0.0, exactly. Only the cubic one answers its way back approximately, so
// that it alone bounds the masses for which it may be used.
namespace kvan::calibration::Transformation {

/// raw = SignedSqrt((mass + shift) * C1) + C0.
class CalibrationTransformatorTOF2Linear final
    : public TofTransformator<CalibrationTransformatorTOF2Linear, RMShift<RMLinear<SquareRoot>>, 1> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Linear";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Tof2;
};

/// raw = (mass + shift) * C2 + SignedSqrt((mass + shift) * C1) + C0. Fails where the curve has no real mass.
class CalibrationTransformatorTOF2Quadratic final
    : public TofTransformator<CalibrationTransformatorTOF2Quadratic, RMShift<RMQuadratic<SquareRoot>>, 2> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Quadratic";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Tof2;
};

/// raw = ((t * C3 + C2) * t + B) * t + C0 with t = SignedSqrt(mass + shift). The way back is approximate.
class CalibrationTransformatorTOF2Cubic final
    : public TofTransformator<CalibrationTransformatorTOF2Cubic, RMShift<RMCubic<SquareRoot>>, 3> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Cubic";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Tof2;

    Range usableMassRange(double mass, double tolerance) const override {
        return Tof2CubicRange(*this, functional()).usableMassRange(mass, tolerance);
    }
};

namespace {

using StoredAxis = Constants::CalibrationConstantsPhysicalTOF;
using StoredLaw = Constants::CalibrationConstantsFunctionalTOF2;
using CompensatedLaw = Constants::CalibrationConstantsFunctionalTOF2TemperatureCompensation;

std::shared_ptr<ICalibrationTransformator> make(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical) {
    const auto& law = knownView<ICalibrationConstantsFunctionalTOF2, StoredLaw, CompensatedLaw>(*functional);
    if (law.GetStoredC3() != 0.0)
        return adopt<CalibrationTransformatorTOF2Cubic, StoredAxis, StoredLaw, CompensatedLaw>(std::move(functional),
                                                                                               std::move(physical));
    return law.GetStoredC2() != 0.0
               ? adopt<CalibrationTransformatorTOF2Quadratic, StoredAxis, StoredLaw, CompensatedLaw>(
                     std::move(functional), std::move(physical))
               : adopt<CalibrationTransformatorTOF2Linear, StoredAxis, StoredLaw, CompensatedLaw>(std::move(functional),
                                                                                                  std::move(physical));
}

}  // namespace

}  // namespace kvan::calibration::Transformation

namespace kvan::calibration {

const LawOfConstants g_tof2Law = {
    Transformation::offers<ICalibrationConstantsFunctionalTOF2>,
    Transformation::offers<ICalibrationConstantsPhysicalTOF>,
    "kvan::calibration::Transformation::CalibrationTransformatorFactory::createTransformatorTof2: funcConsts is not of "
    "type ICalibrationConstantsFunctionalTOF2",
    Transformation::make};

}  // namespace kvan::calibration
