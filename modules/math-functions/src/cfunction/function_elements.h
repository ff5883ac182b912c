#pragma once

#include <cstddef>
#include <optional>

namespace kvan::math {

/// What a function is made of: an element tells the value at any x, and does not change once it is made.
class CFuncBaseElem {
public:
    virtual ~CFuncBaseElem() = default;

    virtual double Value(double x) const = 0;

    /// Of an order above 0.
    virtual double Derivative(double x, int order) const = 0;

    /// `x` and `values` may be one array.
    virtual void Values(const double* x, double* values, std::size_t count) const;

    virtual std::optional<double> Inverse(double y, double lower, double upper) const;

protected:
    CFuncBaseElem() = default;
    CFuncBaseElem(const CFuncBaseElem&) = default;
    CFuncBaseElem& operator=(const CFuncBaseElem&) = default;
};

/// An element that is a whole function by itself.
class CSpec1dElem : public CFuncBaseElem {};

}  // namespace kvan::math
