#pragma once

#include "utilities/MonotonicRange.h"

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <logger/logger.h>

namespace kvan::calibration::Transformation {

/// Where the approximate way from raw value to mass of the cubic TOF2 law may be trusted, and the exact way. Works on
/// the conversions and the constants of `law`, which must outlive it.
class Tof2CubicRange {
public:
    using Range = ICalibrationTransformator::Range;

    Tof2CubicRange(const ICalibrationTransformator& law, const ICalibrationConstantsFunctional& constants);

    /// The mass between `lower` and `upper` at that raw value, by the roots of the polynomial. When rounding leaves no
    /// root inside, the bound whose raw value is nearer. Throws as `realRootsOfCubic`.
    double exactRawToMass(double raw, double lower, double upper) const;

    /// The interval around `mass` on which both the law and its quadratic approximation rise, less one mass unit at
    /// either end, and cut where the way there and back errs by more than `tolerance`, unless that is 0.0. (0.0, 0.0)
    /// with a WARN line when the two laws share no raw value.
    Range usableMassRange(double mass, double tolerance) const;

private:
    Range monotonicRangeOfApproximation(double mass) const;
    Range usableTimeRange(const Range& masses) const;
    Range restrictRoundTrip(const Range& masses, double tolerance) const;

    const ICalibrationTransformator& m_law;
    Utilities::TofPolynomial m_polynomial;
    logging::Logger m_logger;
};

}  // namespace kvan::calibration::Transformation
