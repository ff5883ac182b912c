#include "cfunction/fixed_elements.h"

#include <math-functions/invert.h>

// Elements with a fixed shape on a stretch of the axis. Bar and Haar element are 0.0 beside it; constant and line are
// asked for any x, and whoever puts them together chooses the one in force. The search needs no formula of theirs: it
// asks for values only.
namespace kvan::math {

void CFuncBaseElem::Values(const double* x, double* values, std::size_t count) const {
    for (std::size_t k = 0; k < count; ++k)
        values[k] = Value(x[k]);
}

std::optional<double> CFuncBaseElem::Inverse(double y, double lower, double upper) const {
    return invert([this](double x) { return Value(x); }, y, lower, upper);
}

double CBar1dElem::Value(double x) const {
    return m_stretch.Contains(x) ? m_height : 0.0;
}

double CBar1dElem::Derivative(double, int) const {
    return 0.0;
}

double CHaar1dElem::Value(double x) const {
    if (!m_stretch.Contains(x))
        return 0.0;
    // The middle belongs to the second half.
    return x < m_stretch.Middle() ? m_height : -m_height;
}

double CHaar1dElem::Derivative(double, int) const {
    return 0.0;
}

double CConst1dElem::Value(double) const {
    return m_value;
}

double CConst1dElem::Derivative(double, int) const {
    return 0.0;
}

double CLinear1dElem::Value(double x) const {
    return m_value + m_slope * (x - m_stretch.Lower());
}

double CLinear1dElem::Derivative(double, int order) const {
    // A line has one derivative that is not 0.
    return order == 1 ? m_slope : 0.0;
}

}  // namespace kvan::math
