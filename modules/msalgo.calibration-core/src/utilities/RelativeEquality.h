#pragma once

#include <algorithm>
#include <cmath>

namespace kvan::calibration::Utilities {

/// Three double epsilons: the relative difference up to which two constants count as equal.
inline constexpr double g_relativeTolerance = 6.661338147750939e-16;

/// Numbers that cannot be compared (NaN, equal infinities) count as equal too.
inline bool relativelyEqual(double a, double b) {
    return !(std::abs(a - b) > std::max(std::abs(a), std::abs(b)) * g_relativeTolerance);
}

}  // namespace kvan::calibration::Utilities
