#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

namespace kvan::calibration::Transformation {

/// The inner law in x = 1.0 / mass. A mass of 0.0 gives an infinity.
template <class Inner>
class RMReciprocal {
public:
    static constexpr double Cost = Inner::Cost + 0.3;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        m_inner.UpdateFunctionalConstants(constants);
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure& failure) const {
        return m_inner.MassToRaw(1.0 / mass, failure);
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        return 1.0 / m_inner.RawToMass(raw, failure);
    }

private:
    Inner m_inner;
};

}  // namespace kvan::calibration::Transformation
