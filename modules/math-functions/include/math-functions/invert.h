#pragma once

#include <math-base/find_zero.h>

#include <cmath>
#include <optional>

namespace kvan::math {

/// The x in [lower, upper] with f(x) = y for any callable from double to double, or nothing. The answer depends on the
/// arguments alone, and the search always ends.
///
/// `f` must take both ends to different sides of y, or one of them to y itself. An `upper` above 1e300 means no end:
/// the bracket then steps from `lower` upward by 1, 2, 4 and so on until y is passed. Nothing is found where the steps
/// leave [lower, upper] or 1e300, where `f` is NaN at an end, and in an interval without a beginning or an end. Between
/// the ends the zero is that of `findZeroInRange` at tolerance 0; `f` may throw, which passes through.
template <class Function>
std::optional<double> invert(const Function& f, double y, double lower, double upper) {
    constexpr double endless = 1e300;
    const auto g = [&](double x) { return f(x) - y; };
    const auto passed = [](double from, double to) { return (from < 0.0 && to > 0.0) || (from > 0.0 && to < 0.0); };

    double a = lower;
    const double ga = g(a);
    if (ga == 0.0)
        return a;
    if (std::isnan(ga) || !std::isfinite(lower) || !(lower < upper))
        return std::nullopt;

    double b = upper;
    double gb;
    if (upper <= endless) {
        gb = g(b);
    } else {
        for (double step = 1.0;; step *= 2.0) {
            b = lower + step;
            if (b > endless || b > upper)
                return std::nullopt;
            gb = g(b);
            if (gb == 0.0 || std::isnan(gb) || passed(ga, gb))
                break;
            a = b;
        }
    }
    if (gb == 0.0)
        return b;
    if (!passed(ga, gb) || !(a < b))
        return std::nullopt;
    return findZeroInRange(a, b, g, 0.0, 1000);
}

}  // namespace kvan::math
