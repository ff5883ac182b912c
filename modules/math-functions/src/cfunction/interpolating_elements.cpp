#include "cfunction/interpolating_elements.h"

#include "splines/knots.h"
#include "splines/slopes.h"

#include <algorithm>
#include <iterator>
#include <utility>

// Curves through points as one cubic a stretch, in t = x - knot: c0 + c1 t + c2 t^2 + c3 t^3. With values y, slopes s
// at both ends, width h and secant m it is c0 = y, c1 = s, c2 = (3 m - 2 s - s') / h, c3 = (s + s' - 2 m) / h^2. The
// rest is the choice of slopes. Before the first and after the last point a curve goes on straight, or level where it
// must stay above zero.
namespace kvan::math {

namespace {

using Numbers = std::vector<double>;

std::vector<std::array<double, 4>> constants(const Numbers& x, const Numbers& y) {
    checkPoints(x, y);
    std::vector<std::array<double, 4>> cubics;
    for (const double value : y)
        cubics.push_back({value, 0.0, 0.0, 0.0});
    return cubics;
}

std::vector<std::array<double, 4>> lines(const Numbers& x, const Numbers& y) {
    std::vector<std::array<double, 4>> cubics = constants(x, y);
    const Numbers secants = secantsOf(x, y);
    // The last point goes on as the line before it; a single point is level.
    for (std::size_t i = 0; i < cubics.size() && !secants.empty(); ++i)
        cubics[i][1] = secants[std::min(i, secants.size() - 1)];
    return cubics;
}

}  // namespace

CSpec1dPiecewiseElem::CSpec1dPiecewiseElem(const Numbers& knots, std::vector<Cubic> cubics)
    : m_knots(knots), m_cubics(std::move(cubics)), m_below(m_cubics.front()) {}

CSpec1dPiecewiseElem::CSpec1dPiecewiseElem(const Numbers& x, const Numbers& y, const Numbers& slopes,
                                           Continuation continuation)
    : m_knots(x) {
    const Numbers secants = secantsOf(x, y);
    for (std::size_t i = 0; i < secants.size(); ++i) {
        const double width = x[i + 1] - x[i];
        m_cubics.push_back({y[i], slopes[i], (3.0 * secants[i] - 2.0 * slopes[i] - slopes[i + 1]) / width,
                            (slopes[i] + slopes[i + 1] - 2.0 * secants[i]) / width / width});
    }
    // Level goes on without a slope.
    const double part = continuation == Continuation::Straight ? 1.0 : 0.0;
    m_cubics.push_back({y.back(), part * slopes.back(), 0.0, 0.0});
    m_below = {y.front(), part * slopes.front(), 0.0, 0.0};
}

CSpec1dPiecewiseElem::Piece CSpec1dPiecewiseElem::pieceAt(double x) const {
    const auto above = std::upper_bound(m_knots.begin(), m_knots.end(), x);
    if (above == m_knots.begin())
        return {m_below, x - m_knots.front()};
    const auto knot = std::prev(above);
    return {m_cubics[static_cast<std::size_t>(knot - m_knots.begin())], x - *knot};
}

double CSpec1dPiecewiseElem::Value(double x) const {
    const auto [c, t] = pieceAt(x);
    return ((c[3] * t + c[2]) * t + c[1]) * t + c[0];
}

double CSpec1dPiecewiseElem::Derivative(double x, int order) const {
    const auto [c, t] = pieceAt(x);
    // A cubic has no derivatives beyond the third.
    switch (order) {
        case 1:
            return (3.0 * c[3] * t + 2.0 * c[2]) * t + c[1];
        case 2:
            return 6.0 * c[3] * t + 2.0 * c[2];
        case 3:
            return 6.0 * c[3];
        default:
            return 0.0;
    }
}

CSpec1dConstElem::CSpec1dConstElem(const Numbers& xValues, const Numbers& yValues)
    : CSpec1dPiecewiseElem(xValues, constants(xValues, yValues)) {}

CSpec1dLinearElem::CSpec1dLinearElem(const Numbers& xValues, const Numbers& yValues)
    : CSpec1dPiecewiseElem(xValues, lines(xValues, yValues)) {}

CSpec1dCubicSplineElem::CSpec1dCubicSplineElem(const Numbers& xValues, const Numbers& yValues)
    : CSpec1dPiecewiseElem(xValues, yValues, naturalSplineSlopes(xValues, yValues), Continuation::Straight) {}

CSpec1dAkimaElem::CSpec1dAkimaElem(const Numbers& xValues, const Numbers& yValues)
    : CSpec1dPiecewiseElem(xValues, yValues, akimaSlopes(xValues, yValues), Continuation::Straight) {}

CSpec1dAkimaPosConstrainedElem::CSpec1dAkimaPosConstrainedElem(const Numbers& xValues, const Numbers& yValues)
    : CSpec1dPiecewiseElem(xValues, yValues, positiveAkimaSlopes(xValues, yValues), Continuation::Level) {}

}  // namespace kvan::math
