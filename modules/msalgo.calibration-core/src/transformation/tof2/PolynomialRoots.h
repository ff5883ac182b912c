#pragma once

#include <vector>

namespace kvan::calibration::Transformation {

/// The roots of p0 + p1 x + p2 x^2 + p3 x^3 whose imaginary part is exactly 0.0, in the order found: Laguerre's method
/// with every root polished. Throws `std::runtime_error` "Failed to determine roots of polynomial: order < 2." when p2
/// and p3 are zero, "Failed to determine roots of polynomial. Vigra returned error." when the search fails.
std::vector<double> realRootsOfCubic(double p0, double p1, double p2, double p3);

}  // namespace kvan::calibration::Transformation
