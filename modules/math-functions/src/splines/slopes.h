#pragma once

#include <vector>

namespace kvan::math {

// Of points with strictly ascending `x`. All but the secants throw `std::invalid_argument` for points that are none, as
// `checkPoints` does.

/// One for each line between two neighbours.
std::vector<double> secantsOf(const std::vector<double>& x, const std::vector<double>& y);

/// The slopes at the points that make the second derivative continuous, and zero at the ends.
std::vector<double> naturalSplineSlopes(const std::vector<double>& x, const std::vector<double>& y);

/// Those of Akima's method.
std::vector<double> akimaSlopes(const std::vector<double>& x, const std::vector<double>& y);

/// The same, made less steep where the curve would fall below zero between points that do not.
std::vector<double> positiveAkimaSlopes(const std::vector<double>& x, const std::vector<double>& y);

}  // namespace kvan::math
