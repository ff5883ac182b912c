#pragma once

#include "transformation/policies/PolicyConstants.h"
#include "transformation/policies/QuadraticRoot.h"

namespace kvan::calibration::Transformation {

/// raw = QuadraticTerm(mass) * C2 + Root(mass * C1) + C0.
template <class RootPolicy>
class RMQuadratic {
public:
    static constexpr double Cost = 1.0;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        m_root.Update(viewOf<ICalibrationConstantsFunctionalComputationQuadratic>(
            constants, "RMQuadratic::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
            "ICalibrationConstantsFunctionalComputationQuadratic"));
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure&) const {
        return RootPolicy::QuadraticTerm(mass) * m_root.C2 + RootPolicy::Root(mass * m_root.C1) + m_root.C0;
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        return RootPolicy::Unroot(m_root.Solve(raw, failure));
    }

private:
    QuadraticRoot<RootPolicy> m_root;
};

}  // namespace kvan::calibration::Transformation
