#pragma once

#include <cstdint>
#include <limits>

namespace kvan::calibration::Utilities {

/// Truncates toward zero into 32 bits; NaN gives 0, a value outside the range the nearer end of it. Free of branches.
[[gnu::always_inline]] inline std::int32_t truncateToIndex(double value) {
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    value = value == value ? value : 0.0;
    value = value > lowest ? value : lowest;
    value = value < highest ? value : highest;
    return static_cast<std::int32_t>(value);
}

}  // namespace kvan::calibration::Utilities
