#pragma once

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace kvan::math {

namespace findzero {

struct Point {
    double x;
    double y;
};

/// A step from `best` as a fraction, so that it can be judged before it is divided out.
struct Step {
    double numerator;
    double denominator;  // has the sign that makes the numerator positive or zero
};

/// Through all three points if they are distinct, else through the two.
inline Step interpolate(const Point& previous, const Point& best, const Point& opposite) {
    const double ratio = best.y / previous.y;
    double p;
    double q;
    if (previous.x == opposite.x) {
        p = (opposite.x - best.x) * ratio;
        q = 1.0 - ratio;
    } else {
        const double s = previous.y / opposite.y;
        const double r = best.y / opposite.y;
        p = ratio * ((opposite.x - best.x) * s * (s - r) - (best.x - previous.x) * (r - 1.0));
        q = (s - 1.0) * (r - 1.0) * (ratio - 1.0);
    }
    return p > 0.0 ? Step{p, -q} : Step{-p, q};
}

inline bool differInSign(double a, double b) {
    return !((a > 0.0 && b > 0.0) || (a < 0.0 && b < 0.0));
}

}  // namespace findzero

/// A zero of `f`, any callable from double to double, in [a, b] by Brent's method, as R. P. Brent tells it in
/// "Algorithms for Minimization without Derivatives" (1973), chapter 4: inverse quadratic or secant steps as long as
/// they stay well inside the bracket, else bisection. `f(a)` and `f(b)` should differ in sign; this is not checked, and
/// without it the result is some point of the interval.
///
/// Ends when the bracket's half is within 2 epsilon |b| + `tolerance` / 2, on an exact zero, or after `maxIterations`
/// steps; each gives the best estimate. `iterations`, if given, receives the number of steps.
///
/// Throws `std::runtime_error` "findZeroInRange(): tol < 0." or "findZeroInRange(): b <= a.", and what `f` throws.
template <class Function>
double findZeroInRange(double a, double b, const Function& f, double tolerance, int maxIterations,
                       int* iterations = nullptr) {
    using findzero::Point;
    if (0.0 > tolerance)
        throw std::runtime_error("findZeroInRange(): tol < 0.");
    if (!(a < b))
        throw std::runtime_error("findZeroInRange(): b <= a.");
    int unasked;
    int& count = iterations != nullptr ? *iterations : unasked;

    Point previous{a, f(a)};
    Point best{b, f(b)};
    Point opposite = previous;  // the zero lies between it and `best`
    for (count = 0; count < maxIterations; ++count) {
        const double lastStep = best.x - previous.x;
        if (std::abs(opposite.y) < std::abs(best.y)) {
            previous = std::exchange(best, opposite);
            opposite = previous;
        }
        const double near = 2.0 * std::numeric_limits<double>::epsilon() * std::abs(best.x) + tolerance * 0.5;
        const double half = (opposite.x - best.x) * 0.5;
        if (std::abs(half) <= near || best.y == 0.0)
            break;

        double step = half;
        if (std::abs(lastStep) >= near && std::abs(previous.y) > std::abs(best.y)) {
            const auto [p, q] = findzero::interpolate(previous, best, opposite);
            const double bracket = opposite.x - best.x;
            if (p < 0.75 * bracket * q - std::abs(near * q) * 0.5 && p < std::abs(lastStep * q * 0.5))
                step = p / q;
        }
        if (std::abs(step) < near)
            step = std::copysign(near, half);

        previous = best;
        best.x += step;
        best.y = f(best.x);
        if (!findzero::differInSign(best.y, opposite.y))
            opposite = previous;
    }
    return best.x;
}

}  // namespace kvan::math
