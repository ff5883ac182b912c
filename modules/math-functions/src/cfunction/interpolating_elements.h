#pragma once

#include "cfunction/function_elements.h"

#include <array>
#include <vector>

namespace kvan::math {

/// Base of the elements that go through points: a cubic in x - knot from each knot up to the next one, and one
/// in x - first knot below all.
class CSpec1dPiecewiseElem : public CSpec1dElem {
public:
    double Value(double x) const final;
    double Derivative(double x, int order) const final;

protected:
    using Cubic = std::array<double, 4>;  // in ascending order of power

    /// One cubic a knot; the first also holds below.
    CSpec1dPiecewiseElem(const std::vector<double>& knots, std::vector<Cubic> cubics);

    /// The cubics between points of known slope; outside, straight on, or level.
    enum class Continuation { Straight, Level };
    CSpec1dPiecewiseElem(const std::vector<double>& x, const std::vector<double>& y, const std::vector<double>& slopes,
                         Continuation continuation);

private:
    struct Piece {
        const Cubic& cubic;
        double offset;  // from its knot
    };
    Piece pieceAt(double x) const;

    std::vector<double> m_knots;
    std::vector<Cubic> m_cubics;
    Cubic m_below;
};

/// Kind 4: the value of the nearest point at or below x.
class CSpec1dConstElem final : public CSpec1dPiecewiseElem {
public:
    CSpec1dConstElem(const std::vector<double>& xValues, const std::vector<double>& yValues);
};

/// Kind 5: straight lines, the outer ones going on.
class CSpec1dLinearElem final : public CSpec1dPiecewiseElem {
public:
    CSpec1dLinearElem(const std::vector<double>& xValues, const std::vector<double>& yValues);
};

/// Kind 6: the natural cubic spline, without curvature at the ends and straight on beyond them.
class CSpec1dCubicSplineElem final : public CSpec1dPiecewiseElem {
public:
    CSpec1dCubicSplineElem(const std::vector<double>& xValues, const std::vector<double>& yValues);
};

/// Kind 7: the Akima spline, straight on beyond the ends.
class CSpec1dAkimaElem final : public CSpec1dPiecewiseElem {
public:
    CSpec1dAkimaElem(const std::vector<double>& xValues, const std::vector<double>& yValues);
};

/// Kind 8: the Akima spline with its slopes limited so that it stays above zero between points that do: a cubic of end
/// values y0, y1 and width h does where its slopes are not below -3 y0 / h and not above 3 y1 / h (J. W. Schmidt and
/// W. Hess, BIT 28 (1988) 340). Level beyond the ends.
class CSpec1dAkimaPosConstrainedElem final : public CSpec1dPiecewiseElem {
public:
    CSpec1dAkimaPosConstrainedElem(const std::vector<double>& xValues, const std::vector<double>& yValues);
};

}  // namespace kvan::math
