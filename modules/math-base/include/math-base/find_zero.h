#pragma once

#include <functional>

namespace kvan::math {

/// A zero of `f` in [a, b] by Brent's method, as R. P. Brent tells it in "Algorithms for Minimization without
/// Derivatives" (1973), chapter 4: inverse quadratic or secant steps as long as they stay well inside the bracket, else
/// bisection. `f(a)` and `f(b)` should differ in sign; this is not checked, and without it the result is some point of
/// the interval.
///
/// Ends when the bracket's half is within 2 epsilon |b| + `tolerance` / 2, on an exact zero, or after `maxIterations`
/// steps; each gives the best estimate. `iterations`, if given, receives the number of steps.
///
/// Throws `std::runtime_error` "findZeroInRange(): tol < 0." or "findZeroInRange(): b <= a.", and what `f` throws.
double findZeroInRange(double a, double b, const std::function<double(double)>& f, double tolerance, int maxIterations,
                       int* iterations = nullptr);

}  // namespace kvan::math
