#pragma once

#include <cmath>

namespace kvan::calibration::Transformation {

/// The square root of `x`, for a negative one the negated root of -x. -0.0 and NaN stay what they are; the sign is
/// copied instead of tested, which gives the same bits.
[[gnu::always_inline]] inline double SignedSqrt(double x) {
    return std::copysign(std::sqrt(std::fabs(x)), x);
}

/// x * x, negated for a negative `x`. -0.0 gives 0.0, so the sign cannot be copied here.
[[gnu::always_inline]] inline double SignedSquare(double x) {
    const double square = x * x;
    return 0.0 > x ? -square : square;
}

/// Laws in which raw value goes with the root of mass: written in t with mass = t * t and raw(t) a polynomial.
struct SquareRoot {
    [[gnu::always_inline]] static double Root(double x) { return SignedSqrt(x); }
    [[gnu::always_inline]] static double Unroot(double t) { return SignedSquare(t); }
    /// What C2 multiplies in raw(mass).
    [[gnu::always_inline]] static double QuadraticTerm(double mass) { return mass; }
    static double B(double C1) { return SignedSqrt(C1); }
    static double B2(double C1) { return C1; }
};

/// Laws in which raw value is a polynomial in mass itself.
struct NoSquareRoot {
    [[gnu::always_inline]] static double Root(double x) { return x; }
    [[gnu::always_inline]] static double Unroot(double t) { return t; }
    [[gnu::always_inline]] static double QuadraticTerm(double mass) { return mass * mass; }
    static double B(double C1) { return C1; }
    static double B2(double C1) { return C1 * C1; }
};

}  // namespace kvan::calibration::Transformation
