#pragma once

#include "cfunction/function_elements.h"
#include "cfunction/geometry.h"

namespace kvan::math {

/// A height on its stretch of the axis, 0.0 beside it.
class CBar1dElem final : public CFuncBaseElem {
public:
    CBar1dElem(const CGeomBaseElem& stretch, double height) : m_stretch(stretch), m_height(height) {}

    double Value(double x) const override;
    double Derivative(double x, int order) const override;

private:
    CGeomBaseElem m_stretch;
    double m_height;
};

/// A height on the first half of its stretch and the negated one on the second, 0.0 beside it.
class CHaar1dElem final : public CFuncBaseElem {
public:
    CHaar1dElem(const CGeomBaseElem& stretch, double height) : m_stretch(stretch), m_height(height) {}

    double Value(double x) const override;
    double Derivative(double x, int order) const override;

private:
    CGeomBaseElem m_stretch;
    double m_height;
};

/// One value.
class CConst1dElem final : public CFuncBaseElem {
public:
    CConst1dElem(const CGeomBaseElem& stretch, double value) : m_stretch(stretch), m_value(value) {}

    const CGeomBaseElem& Stretch() const { return m_stretch; }
    double Value(double x) const override;
    double Derivative(double x, int order) const override;

private:
    CGeomBaseElem m_stretch;
    double m_value;
};

/// A straight line by its value and slope at the lower end of the stretch.
class CLinear1dElem final : public CFuncBaseElem {
public:
    CLinear1dElem(const CGeomBaseElem& stretch, double value, double slope)
        : m_stretch(stretch), m_value(value), m_slope(slope) {}

    const CGeomBaseElem& Stretch() const { return m_stretch; }
    double Value(double x) const override;
    double Derivative(double x, int order) const override;

private:
    CGeomBaseElem m_stretch;
    double m_value;
    double m_slope;
};

}  // namespace kvan::math
