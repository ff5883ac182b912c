#pragma once

#include "transformation/policies/PolicyConstants.h"
#include "transformation/policies/SquareRoot.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

namespace kvan::calibration::Transformation {

/// raw = Root(mass * C1) + C0. Never fails: a C1 of 0.0 gives infinities.
template <class RootPolicy>
class RMLinear {
public:
    static constexpr double Cost = 0.3;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        const auto& view = viewOf<ICalibrationConstantsFunctionalComputationLinear>(
            constants, "RMLinear::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
            "ICalibrationConstantsFunctionalComputationLinear");
        m_C0 = view.GetC0();
        m_C1 = view.GetC1();
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure&) const {
        return RootPolicy::Root(mass * m_C1) + m_C0;
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure&) const {
        return RootPolicy::Unroot(raw - m_C0) / m_C1;
    }

private:
    double m_C0 = 0.0;
    double m_C1 = 0.0;
};

}  // namespace kvan::calibration::Transformation
