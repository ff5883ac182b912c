#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kvan::calibration::Utilities {

/// Beyond any polynomial that could be fitted. A search or a root finder evaluates each coefficient again and again.
inline constexpr std::size_t g_mostCoefficients = 64;

/// Whether none of the numbers is NaN or infinite.
inline bool areFinite(const std::vector<double>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

/// Whether a law may be made of the coefficients: not too many, all of them finite.
inline bool areUsable(const std::vector<double>& coefficients) {
    return coefficients.size() <= g_mostCoefficients && areFinite(coefficients);
}

}  // namespace kvan::calibration::Utilities
