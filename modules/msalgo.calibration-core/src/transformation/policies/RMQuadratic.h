#pragma once

#include "calibration-core/interfaces/ICalibrationConstantsFunctional.h"
#include "transformation/policies/PolicyConstants.h"
#include "transformation/policies/SquareRoot.h"

#include <cmath>
#include <stdexcept>

namespace kvan::calibration::Transformation {

/// The failure of a quadratic law whose discriminant goes below zero; thrown bare, without function, file and line.
[[noreturn]] void throwComplexSolution();

/// raw = QuadraticTerm(mass) * C2 + Root(mass * C1) + C0.
template <class RootPolicy>
class RMQuadratic {
public:
    static constexpr double Cost = 1.0;

    void UpdateFunctionalConstants(const ICalibrationConstantsFunctional& constants) {
        const auto& view = viewOf<ICalibrationConstantsFunctionalComputationQuadratic>(
            constants, "RMQuadratic::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
            "ICalibrationConstantsFunctionalComputationQuadratic");
        m_C0 = view.GetC0();
        m_C1 = view.GetC1();
        m_C2 = view.GetC2();
        m_sign = 0.0 > m_C1 ? -1.0 : 1.0;
        m_B = RootPolicy::B(m_C1);
        m_B2 = RootPolicy::B2(m_C1);
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure&) const {
        return RootPolicy::QuadraticTerm(mass) * m_C2 + RootPolicy::Root(mass * m_C1) + m_C0;
    }

    /// s solves C2*s*s + B*s = raw - C0, mirrored about C0, so that times before C0 give the odd extension. q adds two
    /// terms of one sign, so nothing cancels where C2 is small.
    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        const double disc = m_B2 - (m_C0 > raw ? raw - m_C0 : m_C0 - raw) * 4.0 * m_C2;
        failure.raiseIf(0.0 > disc, throwComplexSolution);
        const double q = (std::sqrt(disc) * m_sign + m_B) * -0.5;
        return RootPolicy::Unroot((m_C0 - raw) / q);
    }

private:
    double m_C0 = 0.0;
    double m_C1 = 0.0;
    double m_C2 = 0.0;
    double m_sign = 1.0;
    double m_B = 0.0;
    double m_B2 = 0.0;
};

}  // namespace kvan::calibration::Transformation
