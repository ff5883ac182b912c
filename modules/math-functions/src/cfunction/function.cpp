#include "cfunction/function_imp.h"
#include "cfunction/interpolating_elements.h"
#include "cfunction/polynomial_elements.h"
#include "splines/knots.h"

#include <math-functions/function.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// The strategy codes and what they are made of. A function is built once and shared by its copies, never changed.
// Values that make no element throw "not initialized correctly, " with the reason, before anything is kept.
namespace kvan::math {

namespace {

using Numbers = std::vector<double>;

ArgumentRange rangeOf(const Numbers& xValues) {
    // No ends, or equal ones, stand for all numbers.
    if (!xValues.empty() && xValues.size() != 2)
        throwNotInitialized("xValues are not the two ends of an argument range");
    return xValues.empty() ? ArgumentRange(0.0, 0.0) : ArgumentRange(xValues[0], xValues[1]);
}

template <class Element, class... Parameters>
std::shared_ptr<const CFunctionImp> whole(const Parameters&... parameters) {
    return std::make_shared<CSpec1dElementFunction>(std::make_unique<Element>(parameters...));
}

}  // namespace

std::shared_ptr<const CFunctionImp> CFunction::GetStrategy(int strategy, const Numbers& xValues,
                                                           const Numbers& yValues) {
    // The codes are those of stored calibrations; 9 and 10 differ by name only.
    switch (strategy) {
        case 1:
            return whole<CSpec1dLinearElem>(xValues, yValues);
        case 2:
            return whole<CSpec1dConstElem>(xValues, yValues);
        case 3:
            return whole<CSpec1dCubicSplineElem>(xValues, yValues);
        case 4:
            return whole<CSpec1dAkimaElem>(xValues, yValues);
        case 5:
            return whole<CSpec1dAkimaPosConstrainedElem>(xValues, yValues);
        case 6:
            return whole<CSpec1dIntPolynomElemXAll>(yValues);
        case 7:
            return std::make_shared<CFixedElementFunction<CLinear1dElem>>(xValues, yValues);
        case 8:
            return std::make_shared<CFixedElementFunction<CConst1dElem>>(xValues, yValues);
        case 9:
            return whole<CSpec1dIntPolynomElemXCopyExt>(yValues, rangeOf(xValues));
        case 10:
            return whole<CSpec1dIntPolynomElemGPXExt>(yValues, rangeOf(xValues));
        case 11:
            return whole<CSpec1dRealPolynomElemXDerivExt>(yValues, rangeOf(xValues));
        default:
            BOOST_THROW_EXCEPTION(std::invalid_argument("Unsupported CFunction strategy."));
    }
}

CFunction::CFunction(int strategy, const Numbers& xValues, const Numbers& yValues)
    : m_strategy(GetStrategy(strategy, xValues, yValues)) {}

CFunction::CFunction(int strategy, const Numbers& coefficients, double lower, double upper)
    : m_strategy(GetStrategy(strategy, {lower, upper}, coefficients)) {}

double CFunction::operator()(double x, int derivative) const {
    return Derivative(x, derivative);
}

double CFunction::Derivative(double x, int order) const {
    // Without a strategy a function is 0.0 everywhere, its derivatives too.
    if (!m_strategy)
        return 0.0;
    return order > 0 ? m_strategy->Derivative(x, order) : m_strategy->Value(x);
}

void CFunction::Values(const double* x, double* values, std::size_t count) const {
    if (m_strategy)
        m_strategy->Values(x, values, count);
    else
        std::fill_n(values, count, 0.0);
}

void CFunction::Inverse(double y, double /* guess */, double lower, double upper, bool& found, double& value) const {
    // Starting from the guess would make the last bits depend on what a thread searched before.
    const std::optional<double> solution = m_strategy ? m_strategy->Inverse(y, lower, upper) : std::nullopt;
    found = solution.has_value();
    if (found)
        value = *solution;
}

}  // namespace kvan::math
