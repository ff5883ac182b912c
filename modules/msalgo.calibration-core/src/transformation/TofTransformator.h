#pragma once

#include "transformation/Transformator.h"
#include "transformation/policies/ConstantsSettingNoAction.h"
#include "transformation/policies/RILinear.h"
#include "utilities/MonotonicRange.h"

namespace kvan::calibration::Transformation {

/// A time-of-flight law, in which raw is a polynomial of degree `Degree` in the root of mass. It may be used wherever
/// it rises.
template <class Derived, class RawMassPolicy, std::size_t Degree>
class TofTransformator : public Transformator<Derived, RawMassPolicy, RILinear, ConstantsSettingNoAction> {
public:
    using Range = ICalibrationTransformator::Range;

    Range monotonicMassRange(double mass) const override {
        const Utilities::TofPolynomial law(this->functional());
        return Utilities::monotonicPolyShiftedSqrtRange(law.coefficients(Degree), mass, law.shift);
    }

    Range usableMassRange(double mass, double) const override { return this->monotonicMassRange(mass); }
};

}  // namespace kvan::calibration::Transformation
