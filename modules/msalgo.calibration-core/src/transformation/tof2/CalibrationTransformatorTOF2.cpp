#include "transformation/NewTransformator.h"
#include "transformation/TofTransformator.h"
#include "transformation/policies/RMCubic.h"
#include "transformation/policies/RMLinear.h"
#include "transformation/policies/RMQuadratic.h"
#include "transformation/policies/RMShift.h"
#include "transformation/tof2/Tof2CubicRange.h"

namespace kvan::calibration::Transformation {

/// raw = SignedSqrt((mass + shift) * C1) + C0.
class CalibrationTransformatorTOF2Linear final
    : public TofTransformator<CalibrationTransformatorTOF2Linear, RMShift<RMLinear<SquareRoot>>, 1> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Linear";
    using StoredForm = Tof2StoredForm;
};

/// raw = (mass + shift) * C2 + SignedSqrt((mass + shift) * C1) + C0. Fails where the curve has no real mass.
class CalibrationTransformatorTOF2Quadratic final
    : public TofTransformator<CalibrationTransformatorTOF2Quadratic, RMShift<RMQuadratic<SquareRoot>>, 2> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Quadratic";
    using StoredForm = Tof2StoredForm;
};

/// raw = ((t * C3 + C2) * t + B) * t + C0 with t = SignedSqrt(mass + shift). The way back is approximate.
class CalibrationTransformatorTOF2Cubic final
    : public TofTransformator<CalibrationTransformatorTOF2Cubic, RMShift<RMCubic<SquareRoot>>, 3> {
public:
    static constexpr const char* ClassName = "CalibrationTransformatorTOF2Cubic";
    using StoredForm = Tof2StoredForm;

    Range usableMassRange(double mass, double tolerance) const override {
        return Tof2CubicRange(*this, functional()).usableMassRange(mass, tolerance);
    }
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
