#pragma once

#include <calibration-core/interfaces/ICloneable.h>

#include <iosfwd>
#include <utility>
#include <vector>

namespace kvan::calibration {

/// A polynomial as part of a calibration. A value: transformators hold deep copies of what they are given.
class ICalibrationPolynomial : public ICloneable {
public:
    /// (lower, upper); nothing is bounded where lower < upper does not hold.
    using Range = std::pair<double, double>;

    /// Mass of the ion whose fragments the spectrum shows.
    virtual double GetParentMass() const = 0;
    /// Adapts the polynomial to another parent mass. Throws what the adaptation throws, with nothing changed.
    virtual void SetParentMass(double mass) = 0;

    /// Where the polynomial holds, in the space of its argument.
    virtual Range GetArgRange() const = 0;
    /// For the current parent mass, in ascending order of power.
    virtual const std::vector<double>& GetCoefficients() const = 0;

    /// Whether `other` is of the same class and was made from the same numbers, but for rounding.
    virtual bool IsEqual(const ICalibrationPolynomial& other) const = 0;

    /// For logging only.
    virtual void Dump(std::ostream& sink) const = 0;
};

}  // namespace kvan::calibration
