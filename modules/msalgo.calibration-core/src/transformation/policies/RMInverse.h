#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

namespace kvan::calibration::Transformation {

/// The inner law with raw value and mass exchanged: mass is a polynomial in the raw value.
template <class Inner>
class RMInverse {
public:
    static constexpr double Cost = Inner::Cost;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        m_inner.UpdateFunctionalConstants(constants);
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure& failure) const {
        return m_inner.RawToMass(mass, failure);
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        return m_inner.MassToRaw(raw, failure);
    }

private:
    Inner m_inner;
};

}  // namespace kvan::calibration::Transformation
