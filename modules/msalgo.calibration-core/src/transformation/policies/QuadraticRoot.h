#pragma once

#include "transformation/policies/SquareRoot.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

#include <cmath>

namespace kvan::calibration::Transformation {

/// The failure of a quadratic law whose discriminant goes below zero; thrown bare, without function, file and line.
[[noreturn]] void throwComplexSolution();

/// s with C2 * s * s + B * s = raw - C0, mirrored about C0, so that times before C0 give the odd extension.
template <class RootPolicy>
struct QuadraticRoot {
    double C0 = 0.0;
    double C1 = 0.0;
    double C2 = 0.0;
    double sign = 1.0;
    double B = 0.0;
    double B2 = 0.0;

    void Update(const ICalibrationConstantsFunctionalComputationQuadratic& view) {
        C0 = view.GetC0();
        C1 = view.GetC1();
        C2 = view.GetC2();
        sign = 0.0 > C1 ? -1.0 : 1.0;
        B = RootPolicy::B(C1);
        B2 = RootPolicy::B2(C1);
    }

    /// q adds two terms of one sign, so nothing cancels where C2 is small.
    template <class Failure>
    [[gnu::always_inline]] double Solve(double raw, Failure& failure) const {
        const double disc = B2 - (C0 > raw ? raw - C0 : C0 - raw) * 4.0 * C2;
        failure.raiseIf(0.0 > disc, throwComplexSolution);
        const double q = (std::sqrt(disc) * sign + B) * -0.5;
        return (C0 - raw) / q;
    }
};

}  // namespace kvan::calibration::Transformation
