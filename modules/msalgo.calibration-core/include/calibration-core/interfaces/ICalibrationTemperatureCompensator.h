#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <iosfwd>
#include <memory>
#include <vector>

namespace kvan::calibration {

/// Derives the calibration of a spectrum from a reference calibration and the temperatures at which both were measured.
/// What goes in is shared, not copied. `Compensate` only reads.
class ICalibrationTemperatureCompensator {
public:
    using TransformatorPtr = std::shared_ptr<ICalibrationTransformator>;
    using Values = std::vector<double>;

    virtual ~ICalibrationTemperatureCompensator() = default;

    virtual TransformatorPtr GetReferenceTransformator() const = 0;
    virtual void SetReferenceTransformator(const TransformatorPtr& reference) = 0;
    virtual const Values& GetReferenceTemperatures() const = 0;
    virtual void SetReferenceTemperatures(const Values& temperatures) = 0;
    virtual const Values& GetCorrectionFactors() const = 0;
    virtual void SetCorrectionFactors(const Values& factors) = 0;
    /// Kept and given back for the caller; no compensation looks at it.
    virtual TransformatorPtr GetTransformator() const = 0;
    virtual void SetTransformator(const TransformatorPtr& transformator) = 0;

    /// A new transformator: the reference's law at the temperatures of `transformator`, on the physical axis of
    /// `transformator` and without a measurement mode. A copy of the reference if `transformator` carries no
    /// temperatures; null if either is null. Throws as
    /// `ICalibrationConstantsFunctionalTemperatureCompensation::AdaptToReference`.
    virtual TransformatorPtr Compensate(const TransformatorPtr& transformator) const = 0;

    virtual void Dump(std::ostream& sink) const = 0;
};

}  // namespace kvan::calibration
