#include "splines/slopes.h"

#include "splines/akima.h"
#include "splines/knots.h"

#include <algorithm>

// A spline is a cubic from knot to knot, given by the values and the slopes at both. With h = x[i + 1] - x[i] and the
// secant m = (y[i + 1] - y[i]) / h, continuity of the second derivative at knot i reads
//
//     slope[i - 1] / h[i - 1] + 2 (1 / h[i - 1] + 1 / h[i]) slope[i] + slope[i + 1] / h[i]
//         = 3 (m[i - 1] / h[i - 1] + m[i] / h[i])
//
// and a second derivative of zero at an end 2 slope[0] + slope[1] = 3 m[0]. The system is tridiagonal with a dominant
// diagonal: elimination down and substitution up need no pivots. The checks of the points come before any of it.
namespace kvan::math {

namespace {

using Numbers = std::vector<double>;

}  // namespace

std::vector<double> secantsOf(const Numbers& x, const Numbers& y) {
    Numbers secants;
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
        secants.push_back((y[i + 1] - y[i]) / (x[i + 1] - x[i]));
    return secants;
}

std::vector<double> naturalSplineSlopes(const Numbers& x, const Numbers& y) {
    checkPoints(x, y);
    const Numbers secants = secantsOf(x, y);
    const std::size_t points = x.size();
    if (points < 2)
        return Numbers(points, 0.0);
    Numbers upper(points);
    Numbers slopes(points);
    upper[0] = 0.5;
    slopes[0] = 1.5 * secants[0];
    for (std::size_t i = 1; i < points; ++i) {
        const bool end = i + 1 == points;
        const double lower = end ? 1.0 : 1.0 / (x[i] - x[i - 1]);
        const double next = end ? 0.0 : 1.0 / (x[i + 1] - x[i]);
        const double side = end ? 3.0 * secants[i - 1] : 3.0 * (secants[i - 1] * lower + secants[i] * next);
        const double pivot = 2.0 * (lower + next) - lower * upper[i - 1];
        upper[i] = next / pivot;
        slopes[i] = (side - lower * slopes[i - 1]) / pivot;
    }
    for (std::size_t i = points - 1; i-- > 0;)
        slopes[i] -= upper[i] * slopes[i + 1];
    return slopes;
}

std::vector<double> akimaSlopes(const Numbers& x, const Numbers& y) {
    CAkima akima;
    akima.CalcInterpolation(x, y);
    checkKnots(x);
    return akima.Slopes();
}

std::vector<double> positiveAkimaSlopes(const Numbers& x, const Numbers& y) {
    Numbers slopes = akimaSlopes(x, y);
    // A cubic from y0 >= 0 to y1 >= 0 stays above zero if no slope leads down by more than 3 y0 / h, nor up to y1 by
    // more than 3 y1 / h: the control points of its Bezier form lie at a third of the way.
    for (std::size_t i = 0; i < slopes.size(); ++i) {
        const double height = std::max(y[i], 0.0);
        if (i + 1 < slopes.size())
            slopes[i] = std::max(slopes[i], -3.0 * height / (x[i + 1] - x[i]));
        if (i > 0)
            slopes[i] = std::min(slopes[i], 3.0 * height / (x[i] - x[i - 1]));
    }
    return slopes;
}

}  // namespace kvan::math
