#pragma once

#include <calibration-core/interfaces/ICalibrationConstantsFunctional.h>

#include <memory>

namespace kvan::calibration::Transformation {

/// Facet of a transformator that holds functional constants of its own, for the reader who just made it and shares it
/// with nobody: what others get and set are deep copies.
class IHeldConstants {
public:
    virtual ~IHeldConstants() = default;

    /// Null without constants. Stays the transformator's, until others are set.
    virtual const ICalibrationConstantsFunctional* HeldFunctionalConstants() const = 0;
    /// As `SetFunctionalConstants`, but takes the object over, which nobody else may hold; must not be null.
    virtual void AdoptFunctionalConstants(std::shared_ptr<ICalibrationConstantsFunctional>&& constants) = 0;

protected:
    IHeldConstants() = default;
    IHeldConstants(const IHeldConstants&) = default;
};

}  // namespace kvan::calibration::Transformation
