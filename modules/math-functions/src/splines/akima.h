#pragma once

#include <vector>

namespace kvan::math {

/// Slopes at the points of a curve by the method of H. Akima, "A New Method of Interpolation and Smooth Curve Fitting
/// Based on Local Procedures", Journal of the ACM 17 (1970) 589.
class CAkima {
public:
    /// From strictly ascending `x`. Throws `std::invalid_argument` "CalcInterpolation failed because ..." where the
    /// sizes differ.
    void CalcInterpolation(const std::vector<double>& x, const std::vector<double>& y);

    /// One a point.
    const std::vector<double>& Slopes() const { return m_slopes; }

private:
    std::vector<double> m_slopes;
};

}  // namespace kvan::math
