#pragma once

#include "cfunction/fixed_elements.h"

#include <memory>
#include <utility>
#include <vector>

namespace kvan::math {

/// How a function is put together from elements.
class CFunctionImp {
public:
    virtual ~CFunctionImp() = default;

    virtual double Value(double x) const = 0;

    /// Of an order above 0.
    virtual double Derivative(double x, int order) const = 0;

    /// `x` and `values` may be one array.
    virtual void Values(const double* x, double* values, std::size_t count) const = 0;

    virtual std::optional<double> Inverse(double y, double lower, double upper) const = 0;
};

/// One element, which is the whole function.
class CSpec1dElementFunction final : public CFunctionImp {
public:
    explicit CSpec1dElementFunction(std::unique_ptr<const CSpec1dElem> element) : m_element(std::move(element)) {}

    double Value(double x) const override;
    double Derivative(double x, int order) const override;
    void Values(const double* x, double* values, std::size_t count) const override;
    std::optional<double> Inverse(double y, double lower, double upper) const override;

private:
    std::unique_ptr<const CSpec1dElem> m_element;
};

/// Elements of one kind side by side, each on its own stretch of the axis; the first also holds below, the last above.
/// Each argument searches its element anew, so that no thread's history shows.
template <class Element>
class CFixedElementFunction final : public CFunctionImp {
public:
    /// `xValues` are the lower ends of the stretches. Throws `std::invalid_argument`, see `CFunction`.
    CFixedElementFunction(const std::vector<double>& xValues, const std::vector<double>& yValues);

    double Value(double x) const override;
    double Derivative(double x, int order) const override;
    void Values(const double* x, double* values, std::size_t count) const override;
    std::optional<double> Inverse(double y, double lower, double upper) const override;

private:
    const Element& elementAt(double x) const;

    std::vector<Element> m_elements;
};

}  // namespace kvan::math
