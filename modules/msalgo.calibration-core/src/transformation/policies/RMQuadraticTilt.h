#pragma once

#include "transformation/policies/PolicyConstants.h"

#include <cmath>

namespace kvan::calibration::Transformation {

[[noreturn]] void throwNegativeSlope();
[[noreturn]] void throwConstantPolynomial();

/// x with a * x * x + b * x + c = 0, on the branch that a line of positive slope continues. Past the vertex of the
/// parabola the branch goes on as its mirror image, so that no value of c is without a root.
struct FlippedContinuedQuadraticEquation {
    template <class Failure>
    [[gnu::always_inline]] static double Solve(double c, double b, double a, Failure& failure) {
        if (a == 0.0)
            return SolveDegenerate(b, c, failure);
        const double disc = b * b - a * 4.0 * c;
        const double w = std::sqrt(std::fabs(disc));
        const bool flipped = 0.0 > disc;
        // Of the two quotients that give a root the one in which nothing cancels.
        double numerator = 0.0 > b ? (b - w) * -0.5 : c;
        double denominator = 0.0 > b ? a : (w + b) * -0.5;
        const double a2 = a + a;
        const double flippedNumerator = b > 0.0 ? (-b - w) * -0.5 : c - b * b / a2;
        const double flippedDenominator = b > 0.0 ? a : (w - b) * -0.5;
        numerator = flipped ? flippedNumerator : numerator;
        denominator = flipped ? flippedDenominator : denominator;
        const double x = numerator / denominator;
        return (flipped & (b > 0.0)) ? -x : x;
    }

private:
    template <class Failure>
    [[gnu::always_inline]] static double SolveDegenerate(double b, double c, Failure& failure) {
        failure.raiseIf(0.0 > b, throwNegativeSlope);
        failure.raiseIf(!(b > 0.0) && !(0.0 > b), throwConstantPolynomial);
        return -(c / b);
    }
};

/// raw = x * x * C2 + (x * C1 + C0).
class RMQuadraticTilt {
public:
    static constexpr double Cost = 0.8;

    template <class Constants>
    void UpdateFunctionalConstants(const Constants& constants) {
        const auto& view = viewOf<ICalibrationConstantsFunctionalComputationQuadratic>(
            constants, "RMQuadraticTilt::UpdateFunctionalConstants(const ICalibrationConstantsFunctionalPtr funConsts)",
            "ICalibrationConstantsFunctionalComputationQuadratic");
        m_C0 = view.GetC0();
        m_C1 = view.GetC1();
        m_C2 = view.GetC2();
    }

    template <class Failure>
    [[gnu::always_inline]] double MassToRaw(double x, Failure&) const {
        return x * x * m_C2 + (x * m_C1 + m_C0);
    }

    template <class Failure>
    [[gnu::always_inline]] double RawToMass(double raw, Failure& failure) const {
        return FlippedContinuedQuadraticEquation::Solve(m_C0 - raw, m_C1, m_C2, failure);
    }

private:
    double m_C0 = 0.0;
    double m_C1 = 0.0;
    double m_C2 = 0.0;
};

}  // namespace kvan::calibration::Transformation
