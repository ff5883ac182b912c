#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <memory>
#include <vector>

namespace kvan::calibration {

/// Unit of an error of mass: m/z, or parts per million of the reference.
enum class MassErrorUnit { Mass, Ppm };

/// Errors of a calibration against known masses, and what lies inside decorators. Stateless: any thread at any time.
class ICalibrationUtilities {
public:
    using Values = std::vector<double>;

    virtual ~ICalibrationUtilities() = default;

    /// The innermost transformator below decorators (`ICalibrationTransformatorDecorator`), a deep copy of what the
    /// last of them holds; `transformator` itself if it is none, null included.
    virtual std::shared_ptr<ICalibrationTransformator> PeelDecorators(
        const std::shared_ptr<ICalibrationTransformator>& transformator) const = 0;

    /// Deviation of the mass at `raw` from `referenceMass`, (mass - reference) / reference in parts per million; 0.0
    /// for a reference that is not positive.
    virtual double MassErrorPpm(const ICalibrationTransformator& transformator, double raw,
                                double referenceMass) const = 0;
    /// The same for each pair, up to the end of the shorter vector.
    virtual Values MassErrorsPpm(const ICalibrationTransformator& transformator, const Values& raws,
                                 const Values& referenceMasses) const = 0;

    // Over the errors reference - mass, or that a reference in parts per million, of each pair up to the end of the
    // shorter vector; an error is 0.0 where the reference is not positive.

    /// 0.0 without pairs.
    virtual double RootMeanSquareError(const ICalibrationTransformator& transformator, const Values& raws,
                                       const Values& referenceMasses, MassErrorUnit unit) const = 0;
    /// About the mean of the errors, by count - 1; 0.0 below two pairs.
    virtual double StandardDeviation(const ICalibrationTransformator& transformator, const Values& raws,
                                     const Values& referenceMasses, MassErrorUnit unit) const = 0;
};

/// A fresh one.
std::shared_ptr<ICalibrationUtilities> createCalibrationUtilities();

}  // namespace kvan::calibration
