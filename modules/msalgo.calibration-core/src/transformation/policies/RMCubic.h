#pragma once

#include "transformation/policies/PolicyConstants.h"
#include "transformation/policies/QuadraticRoot.h"

#include <algorithm>
#include <limits>

namespace kvan::calibration::Transformation {

/// raw = f(mass) = ((t * C3 + C2) * t + B) * t + C0 with t = SignedSqrt(mass). The way back is an approximation: the
/// root without the cubic term, rescaled and moved by two chord steps, on the positive side only.
template <class RootPolicy>
class RMCubic;

template <>
class RMCubic<SquareRoot> {
public:
    static constexpr double Cost = 2.0;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        const auto& view = viewOf<ICalibrationConstantsFunctionalComputationCubic>(
            constants, "RMCubic::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
            "ICalibrationConstantsFunctionalComputationCubic");
        m_root.Update(view);
        m_C3 = view.GetC3();
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double mass, Failure&) const {
        return At(SignedSqrt(mass));
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        const double root = m_root.Solve(raw, failure);
        double s = root * raw / std::max(AtSquareOf(root), LeastRaw);
        const double slope = (s * 3.0 * m_C3 + 2.0 * m_root.C2) * s + m_root.B;
        s = s - (AtSquareOf(s) - raw) / slope;
        s = s - (AtSquareOf(s) - raw) / slope;  // the same slope again: a chord, no second Newton step
        return SignedSquare(((root > 0.0) & (m_C3 != 0.0)) ? s : root);
    }

private:
    /// Raw value below which the ratio of wanted to reached one is not trusted: given with the law, it keeps the ratio
    /// finite near the start of the axis, where the reached one goes through 0.0. Times are nanoseconds there, and
    /// those of spectra thousands of them.
    static constexpr double LeastRaw = 20.0;

    [[gnu::always_inline]] double At(double t) const { return ((t * m_C3 + m_root.C2) * t + m_root.B) * t + m_root.C0; }

    /// f(SignedSquare(s)). The root of a square that was just formed is the number itself, to the last bit, unless the
    /// square overflows; squares below the least normal number are taken to do so too.
    [[gnu::always_inline]] double AtSquareOf(double s) const {
        const double square = SignedSquare(s);
        return At(std::fabs(square) == std::numeric_limits<double>::infinity() ? square : s);
    }

    QuadraticRoot<SquareRoot> m_root;
    double m_C3 = 0.0;
};

}  // namespace kvan::calibration::Transformation
