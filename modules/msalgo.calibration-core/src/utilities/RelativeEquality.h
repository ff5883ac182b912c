#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace kvan::calibration::Utilities {

/// Three double epsilons: the relative difference up to which two constants count as equal.
inline constexpr double g_relativeTolerance = 6.661338147750939e-16;

/// Numbers that cannot be compared (NaN, equal infinities) count as equal too.
inline bool relativelyEqual(double a, double b) {
    return !(std::abs(a - b) > std::max(std::abs(a), std::abs(b)) * g_relativeTolerance);
}

inline bool relativelyEqual(const std::vector<double>& a, const std::vector<double>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) { return relativelyEqual(x, y); });
}

}  // namespace kvan::calibration::Utilities
