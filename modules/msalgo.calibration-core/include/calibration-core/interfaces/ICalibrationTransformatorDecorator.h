#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

namespace kvan::calibration {

/// Facet of a transformator that keeps the results of another one inside bounds. What it does not bound is forwarded.
class ICalibrationTransformatorDecorator {
public:
    virtual ~ICalibrationTransformatorDecorator() = default;

    /// A deep copy.
    virtual std::shared_ptr<ICalibrationTransformator> GetDecoratedTransformator() const = 0;
    /// Takes a deep copy; null is ignored.
    virtual void SetDecoratedTransformator(const std::shared_ptr<ICalibrationTransformator>& transformator) = 0;
};

/// Bounds on raw values. With the lower one above the upper one every value becomes the upper one.
class ICalibrationTransformatorRawBoundsChecker : public ICalibrationTransformatorDecorator {
public:
    virtual double GetLowerRawBound() const = 0;
    virtual void SetLowerRawBound(double bound) = 0;
    virtual double GetUpperRawBound() const = 0;
    virtual void SetUpperRawBound(double bound) = 0;
};

/// Bounds on indices; as above.
class ICalibrationTransformatorIndexBoundsChecker : public ICalibrationTransformatorDecorator {
public:
    virtual double GetLowerIndexBound() const = 0;
    virtual void SetLowerIndexBound(double bound) = 0;
    virtual double GetUpperIndexBound() const = 0;
    virtual void SetUpperIndexBound(double bound) = 0;
};

}  // namespace kvan::calibration
