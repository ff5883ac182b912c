#include "cfunction/function_imp.h"

#include "splines/knots.h"

#include <math-functions/invert.h>

#include <algorithm>
#include <limits>

// A function out of several elements takes the one whose stretch begins last before x; the first one also holds below
// all, the last one above all. The search looks at the whole function, so that it may cross from one element to
// another; at a step it ends where the step passes the value.
namespace kvan::math {

namespace {

/// From the knot to the next one, or to infinity.
CGeomBaseElem stretchAt(const std::vector<double>& knots, std::size_t i) {
    const double end = i + 1 < knots.size() ? knots[i + 1] : std::numeric_limits<double>::infinity();
    return {CGeomPoint1d(knots[i]), CGeomPoint1d(end)};
}

void makeElements(const std::vector<double>& x, const std::vector<double>& y, std::vector<CConst1dElem>& elements) {
    checkPoints(x, y);
    for (std::size_t i = 0; i < x.size(); ++i)
        elements.emplace_back(stretchAt(x, i), y[i]);
}

void makeElements(const std::vector<double>& x, const std::vector<double>& y, std::vector<CLinear1dElem>& elements) {
    // A piece takes a value and a slope.
    if (2 * x.size() != y.size())
        throwNotInitialized("2*xValues.size() != yValues.size()");
    checkKnots(x);
    for (std::size_t i = 0; i < x.size(); ++i)
        elements.emplace_back(stretchAt(x, i), y[2 * i], y[2 * i + 1]);
}

}  // namespace

double CSpec1dElementFunction::Value(double x) const {
    return m_element->Value(x);
}

double CSpec1dElementFunction::Derivative(double x, int order) const {
    return m_element->Derivative(x, order);
}

void CSpec1dElementFunction::Values(const double* x, double* values, std::size_t count) const {
    m_element->Values(x, values, count);
}

std::optional<double> CSpec1dElementFunction::Inverse(double y, double lower, double upper) const {
    return m_element->Inverse(y, lower, upper);
}

template <class Element>
CFixedElementFunction<Element>::CFixedElementFunction(const std::vector<double>& xValues,
                                                      const std::vector<double>& yValues) {
    makeElements(xValues, yValues, m_elements);
}

template <class Element>
const Element& CFixedElementFunction<Element>::elementAt(double x) const {
    // The elements ascend by their stretches.
    const auto above =
        std::upper_bound(m_elements.begin(), m_elements.end(), x,
                         [](double place, const Element& element) { return place < element.Stretch().Lower(); });
    // The first piece also holds before its own beginning.
    return above == m_elements.begin() ? m_elements.front() : *std::prev(above);
}

template <class Element>
double CFixedElementFunction<Element>::Value(double x) const {
    return elementAt(x).Value(x);
}

template <class Element>
double CFixedElementFunction<Element>::Derivative(double x, int order) const {
    return elementAt(x).Derivative(x, order);
}

template <class Element>
void CFixedElementFunction<Element>::Values(const double* x, double* values, std::size_t count) const {
    for (std::size_t k = 0; k < count; ++k)
        values[k] = Value(x[k]);
}

template <class Element>
std::optional<double> CFixedElementFunction<Element>::Inverse(double y, double lower, double upper) const {
    return invert([this](double x) { return Value(x); }, y, lower, upper);
}

template class CFixedElementFunction<CConst1dElem>;
template class CFixedElementFunction<CLinear1dElem>;

}  // namespace kvan::math
