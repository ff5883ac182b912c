#include "constants/FtmsModes.h"
#include "transformation/LawMaking.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingAdjustForFTMS.h"
#include "transformation/policies/IndexCheck.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadraticTilt.h"
#include "transformation/policies/RMReciprocal.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/interfaces/ICalibrationTransformatorFTMS.h>

// Laws of Fourier transform instruments: raw is a frequency, a polynomial in 1 / mass, and falls with the index.
// Indices are kept inside the array before they are used, the upper end first. Masses of 0.0 give infinities, no
// failure.
//
// The line between index and frequency depends on the mode of the law, so that each setting of constants carries the
// mode over to the physical ones.
namespace kvan::calibration::Transformation {

/// raw = 1.0 / mass * C1 + C0. No index leaves the array.
class CalibrationTransformatorFTMS04 final
    : public Transformator<CalibrationTransformatorFTMS04, RMReciprocal<RMLinear<NoSquareRoot>>,
                           IndexCheck<RILinear, FTMSIndexChecker>, ConstantsSettingAdjustForFTMS>,
      public ICalibrationTransformatorFTMS {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorFTMS04";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Ftms;
};

/// raw = x * x * C2 + (x * C1 + C0) with x = 1.0 / mass. No index leaves the array.
class CalibrationTransformatorFTMS15 final
    : public Transformator<CalibrationTransformatorFTMS15, RMReciprocal<RMQuadraticTilt>,
                           IndexCheck<RILinear, FTMSIndexChecker>, ConstantsSettingAdjustForFTMS>,
      public ICalibrationTransformatorFTMSQuadratic {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorFTMS15";
    static constexpr CalibrationFamily StoredFamily = CalibrationFamily::Ftms;
};

namespace {

using StoredAxis = Constants::CalibrationConstantsPhysicalFTMS;

std::shared_ptr<ICalibrationTransformator> make(Factory::FunctionalPtr functional, Factory::PhysicalPtr physical) {
    using Constants::FtmsLaw;
    const int mode = functional->GetCalibMode();
    switch (Constants::ftmsModeOf(mode).law) {
        case FtmsLaw::Linear:
            return adopt<CalibrationTransformatorFTMS04, StoredAxis, Constants::CalibrationConstantsFunctionalFTMS04>(
                std::move(functional), std::move(physical));
        case FtmsLaw::Quadratic:
            return adopt<CalibrationTransformatorFTMS15, StoredAxis, Constants::CalibrationConstantsFunctionalFTMS1356>(
                std::move(functional), std::move(physical));
        case FtmsLaw::Index:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: mode 2 not supported [QX]"));
        case FtmsLaw::ConstantsOnly:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: mode 3 and 6 not supported [QX]"));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFactory::createTransformatorIcr: unknown ftms mode. Expected 0..6, but "
                "CalibMode = " +
                std::to_string(mode)));
    }
}

}  // namespace

}  // namespace kvan::calibration::Transformation

namespace kvan::calibration {

const LawOfConstants g_ftmsLaw = {Transformation::offers<ICalibrationConstantsFunctionalFTMS>,
                                  Transformation::offers<ICalibrationConstantsPhysicalFTMS>,
                                  "kvan::calibration::Transformation::CalibrationTransformatorFactory::"
                                  "createTransformatorIcr: expected ICalibrationConstantsFunctionalFTMS",
                                  Transformation::make};

}  // namespace kvan::calibration
