#pragma once

#include <calibration-core/interfaces/ICalibrationPolynomialKITE.h>

namespace kvan::calibration {

/// Facet of the transformators whose law depends on the parent mass of the spectrum. The first generation is made for
/// one parent mass: all but the polynomial is refused with `std::runtime_error` "Not implemented yet.". Setters have
/// the thread rules of the transformator's own.
class ICalibrationTransformatorKITE {
public:
    virtual ~ICalibrationTransformatorKITE() = default;

    virtual double getCurrentParentMass() const = 0;
    /// Base of the raw values.
    virtual double getCurrentReferenceTime() const = 0;
    virtual int getInterpolationMode() const = 0;
    /// Adapts the law. Throws what the adaptation throws, with nothing changed; so does the next one.
    virtual void setCurrentParentMass(double parentMass, double referenceTime) = 0;
    virtual void setInterpolationMode(int mode) = 0;

    /// A deep copy.
    virtual std::shared_ptr<ICalibrationPolynomialKITE> GetPolynomial() const = 0;
    /// The numbers of the law, for logging only. The second generation refuses with `std::runtime_error`.
    virtual void DumpData(std::ostream& sink) const = 0;

protected:
    ICalibrationTransformatorKITE() = default;
    ICalibrationTransformatorKITE(const ICalibrationTransformatorKITE&) = default;
};

}  // namespace kvan::calibration
