#include "serialization/StoredBlocks.h"
#include "transformation/NewTransformator.h"
#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingAdjustForFTMS.h"
#include "transformation/policies/IndexCheck.h"
#include "transformation/policies/RILinear.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadraticTilt.h"
#include "transformation/policies/RMReciprocal.h"

#include <calibration-core/interfaces/ICalibrationTransformatorFTMS.h>

namespace kvan::calibration::Transformation {

namespace {

using FtmsStoredForm = StoredBlocks<tqclegacy::CALIBRATION::FTMSCalibrationBlock>;

/// As any FTMS block, with words of its own for constants of another law.
struct Ftms04StoredForm : FtmsStoredForm {
    static void Write(const ICalibrationTransformator& transformator, BlobForm form,
                      tqclegacy::CALIBRATION::CalibBlobWriteAccess& access) {
        if (!std::dynamic_pointer_cast<ICalibrationConstantsFunctionalFTMS04>(transformator.GetFunctionalConstants()))
            BOOST_THROW_EXCEPTION(std::invalid_argument(
                "CalibrationTransformatorFTMS04::SerializeToBlob: expected functional constants to be of type "
                "ICalibrationConstantsFunctionalFTMS04."));
        FtmsStoredForm::Write(transformator, form, access);
    }
};

}  // namespace

/// raw = 1.0 / mass * C1 + C0. No index leaves the array.
class CalibrationTransformatorFTMS04 final
    : public Transformator<CalibrationTransformatorFTMS04, RMReciprocal<RMLinear<NoSquareRoot>>,
                           IndexCheck<RILinear, FTMSIndexChecker>, ConstantsSettingAdjustForFTMS>,
      public ICalibrationTransformatorFTMS {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorFTMS04";
    using StoredForm = Ftms04StoredForm;
};

/// raw = x * x * C2 + (x * C1 + C0) with x = 1.0 / mass. No index leaves the array.
class CalibrationTransformatorFTMS15 final
    : public Transformator<CalibrationTransformatorFTMS15, RMReciprocal<RMQuadraticTilt>,
                           IndexCheck<RILinear, FTMSIndexChecker>, ConstantsSettingAdjustForFTMS>,
      public ICalibrationTransformatorFTMSQuadratic {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorFTMS15";
    using StoredForm = FtmsStoredForm;
};

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorFTMS04>() {
    return std::make_shared<CalibrationTransformatorFTMS04>();
}

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorFTMS15>() {
    return std::make_shared<CalibrationTransformatorFTMS15>();
}

}  // namespace kvan::calibration::Transformation
