#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace kvan::math {

class CFunctionImp;

/// A handle to a function of one variable that is made of elements. A value: copies share the elements, which never
/// change, so that any number of threads may evaluate and invert one function at once.
///
/// Strategies: 1 straight lines through points, 2 constants from point to point, 3 natural cubic spline, 4 Akima
/// spline, 5 Akima spline that stays above zero, 6 polynomial for all x, 7 straight pieces of (value, slope), 8
/// constant pieces, 9 and 10 polynomial continued by its distance from the identity, 10 being the one of mass
/// corrections, 11 polynomial in sqrt(x) continued straight.
class CFunction {
public:
    /// Without a strategy: 0.0 everywhere.
    CFunction() = default;

    /// A function of strategy 1 to 11. Strategies 1 to 5: the points (xValues[i], yValues[i]), `xValues` strictly
    /// ascending. 7 and 8: piece i holds from xValues[i] up to the next one, the first also below and the last above
    /// all; `yValues` gives a value and a slope a piece to strategy 7, a value to 8. 6 and 9 to 11: `yValues` are the
    /// coefficients in ascending order of power, `xValues` the two ends of the argument range, or empty.
    ///
    /// Throws `std::invalid_argument` "Unsupported CFunction strategy." for any other code, and texts that begin with
    /// "not initialized correctly, " or "CalcInterpolation failed because " for values that make no element.
    CFunction(int strategy, const std::vector<double>& xValues, const std::vector<double>& yValues);

    /// A polynomial of strategy 6, 9, 10 or 11 with its argument range; where lower < upper does not hold, the
    /// polynomial is valid everywhere. Fails as above.
    CFunction(int strategy, const std::vector<double>& coefficients, double lower, double upper);

    /// True if a strategy is held.
    explicit operator bool() const { return m_strategy != nullptr; }

    /// The value at `x`, or the derivative there of an order above 0.
    double operator()(double x, int derivative = 0) const;

    /// The derivative of `order` at `x`; order 0 is the value. Above the degree of a polynomial it is 0.0.
    double Derivative(double x, int order) const;

    /// The values at `count` arguments, the same bits as one by one. `x` and `values` may be one array.
    void Values(const double* x, double* values, std::size_t count) const;

    /// Searches the x in [lower, upper] at which the function is `y`, as `invert` (math-functions/invert.h) tells.
    /// `found` says whether there is one; only then `value` receives it. `guess` may save time and changes no bit.
    void Inverse(double y, double guess, double lower, double upper, bool& found, double& value) const;

private:
    static std::shared_ptr<const CFunctionImp> GetStrategy(int strategy, const std::vector<double>& xValues,
                                                           const std::vector<double>& yValues);

    std::shared_ptr<const CFunctionImp> m_strategy;
};

}  // namespace kvan::math
