#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace kvan::calibration::Utilities {

/// Whether none of the numbers is NaN or infinite.
inline bool areFinite(const std::vector<double>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

}  // namespace kvan::calibration::Utilities
