#pragma once

#include "utilities/RelativeEquality.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

namespace kvan::calibration::Constants {

inline bool equalView(const ICalibrationConstantsFunctionalComputationLinear& a,
                      const ICalibrationConstantsFunctionalComputationLinear& b) {
    return Utilities::relativelyEqual(a.GetC0(), b.GetC0()) && Utilities::relativelyEqual(a.GetC1(), b.GetC1());
}

inline bool equalView(const ICalibrationConstantsFunctionalComputationQuadratic& a,
                      const ICalibrationConstantsFunctionalComputationQuadratic& b) {
    using Linear = ICalibrationConstantsFunctionalComputationLinear;
    return equalView(static_cast<const Linear&>(a), static_cast<const Linear&>(b)) &&
           Utilities::relativelyEqual(a.GetC2(), b.GetC2());
}

inline bool equalView(const ICalibrationConstantsFunctionalComputationCubic& a,
                      const ICalibrationConstantsFunctionalComputationCubic& b) {
    using Quadratic = ICalibrationConstantsFunctionalComputationQuadratic;
    return equalView(static_cast<const Quadratic&>(a), static_cast<const Quadratic&>(b)) &&
           Utilities::relativelyEqual(a.GetC3(), b.GetC3());
}

/// Equality of constants of one family: `other` offers the family's view and the computation view, and the numbers of
/// the latter and the calibration modes agree.
template <class FamilyView, class ComputationView, class Constants>
bool equalFunctional(const Constants& constants, const ICalibrationConstantsFunctional& other) {
    const auto* otherView = dynamic_cast<const ComputationView*>(&other);
    return otherView != nullptr && dynamic_cast<const FamilyView*>(&other) != nullptr &&
           equalView(static_cast<const ComputationView&>(constants), *otherView) &&
           constants.GetCalibMode() == other.GetCalibMode();
}

}  // namespace kvan::calibration::Constants
