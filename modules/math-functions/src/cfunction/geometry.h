#pragma once

namespace kvan::math {

/// A point of the space that elements live on.
struct CGeomBasePoint {};

/// A point of an axis.
struct CGeomPoint1d : CGeomBasePoint {
    explicit CGeomPoint1d(double place) : x(place) {}
    double x;
};

/// The stretch of an axis that belongs to one element, its lower end included.
class CGeomBaseElem {
public:
    CGeomBaseElem(CGeomPoint1d lower, CGeomPoint1d upper) : m_lower(lower), m_upper(upper) {}

    double Lower() const { return m_lower.x; }
    double Middle() const { return m_lower.x + (m_upper.x - m_lower.x) * 0.5; }
    bool Contains(double x) const { return m_lower.x <= x && x < m_upper.x; }

private:
    CGeomPoint1d m_lower;
    CGeomPoint1d m_upper;
};

}  // namespace kvan::math
