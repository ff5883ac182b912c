#pragma once

#include "transformation/policies/PolicyConstants.h"

namespace kvan::calibration::Transformation {

/// The inner law in mass + shift.
template <class Inner>
class RMShift {
public:
    static constexpr double Cost = Inner::Cost;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        m_shift =
            viewOf<ICalibrationConstantsFunctionalComputationShift>(
                constants, "RMShift::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
                "ICalibrationConstantsFunctionalComputationShift")
                .GetShift();
        m_inner.UpdateFunctionalConstants(constants);
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure& failure) const {
        return m_inner.MassToRaw(mass + m_shift, failure);
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        return m_inner.RawToMass(raw, failure) - m_shift;
    }

private:
    double m_shift = 0.0;
    Inner m_inner;
};

}  // namespace kvan::calibration::Transformation
