#include "transformation/NewTransformator.h"
#include "transformation/TofTransformator.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"

namespace kvan::calibration::Transformation {

/// raw = SignedSqrt(mass * C1) + C0. A raw value before C0 gives a negative mass.
class CalibrationTransformatorTOFLinear final
    : public TofTransformator<CalibrationTransformatorTOFLinear, RMLinear<SquareRoot>, 1> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOFLinear";
    using StoredForm = TofStoredForm;
};

/// raw = mass * C2 + SignedSqrt(mass * C1) + C0. Fails where the curve has no real mass.
class CalibrationTransformatorTOFQuadratic final
    : public TofTransformator<CalibrationTransformatorTOFQuadratic, RMQuadratic<SquareRoot>, 2> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOFQuadratic";
    using StoredForm = TofStoredForm;
};

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOFLinear>() {
    return std::make_shared<CalibrationTransformatorTOFLinear>();
}

template <>
std::shared_ptr<ICalibrationTransformator> newTransformator<CalibrationTransformatorTOFQuadratic>() {
    return std::make_shared<CalibrationTransformatorTOFQuadratic>();
}

}  // namespace kvan::calibration::Transformation
