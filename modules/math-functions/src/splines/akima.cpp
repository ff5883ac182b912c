#include "splines/akima.h"

#include <boost/throw_exception.hpp>
#include <cmath>
#include <stdexcept>
#include <string>

// The slope at point i is the mean of the secants on both sides, weighted by how much the secants beyond them change:
//
//     s = (|m3 - m2| m1 + |m1 - m0| m2) / (|m3 - m2| + |m1 - m0|)
//
// with m1 and m2 the secants before and after the point; where nothing changes, their plain mean. Two secants beyond
// either end continue the last change, as in Akima's article.
namespace kvan::math {

void CAkima::CalcInterpolation(const std::vector<double>& x, const std::vector<double>& y) {
    if (y.size() != x.size())
        BOOST_THROW_EXCEPTION(std::invalid_argument("CalcInterpolation failed because y.size() " +
                                                    std::to_string(y.size()) + "!= x.size() " +
                                                    std::to_string(x.size())));
    const std::size_t points = x.size();
    m_slopes.assign(points, 0.0);
    if (points < 2)
        return;

    // secants[i + 2] leads from point i to the next; two more at either end go on as the last ones change
    std::vector<double> secants(points + 3);
    for (std::size_t i = 0; i + 1 < points; ++i)
        secants[i + 2] = (y[i + 1] - y[i]) / (x[i + 1] - x[i]);
    const std::size_t last = points;
    // Two points have one secant, which does not change.
    const double firstChange = points > 2 ? secants[3] - secants[2] : 0.0;
    const double lastChange = points > 2 ? secants[last] - secants[last - 1] : 0.0;
    secants[1] = secants[2] - firstChange;
    secants[0] = secants[1] - firstChange;
    secants[last + 1] = secants[last] + lastChange;
    secants[last + 2] = secants[last + 1] + lastChange;

    for (std::size_t i = 0; i < points; ++i) {
        const double* const m = &secants[i];
        const double left = std::abs(m[3] - m[2]);
        const double right = std::abs(m[1] - m[0]);
        m_slopes[i] = left + right > 0.0 ? (left * m[1] + right * m[2]) / (left + right) : (m[1] + m[2]) * 0.5;
    }
}

}  // namespace kvan::math
