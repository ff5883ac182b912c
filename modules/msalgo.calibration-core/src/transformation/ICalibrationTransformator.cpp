#include <calibration-core/interfaces/ICalibrationTransformator.h>

#include <boost/throw_exception.hpp>
#include <cmath>
#include <stdexcept>

// What every transformator does alike. A width is the distance of its two ends after conversion; where the lower end
// would leave the axis, the whole interval is moved inside, not cut, so that the width in the other unit stays that of
// a place on the axis. Ranges are unknown unless a law knows them.
namespace kvan::calibration {

double ICalibrationTransformator::IndexWidthToMassWidth(double mass, double width) const {
    const double centre = MassToDIndex(mass);
    double lower = centre - width * 0.5;
    double upper = centre + width * 0.5;
    // An index below 0 has no sample.
    if (0.0 > lower) {
        upper = upper - lower;
        lower = 0.0;
    }
    return std::abs(DIndexToMass(upper) - DIndexToMass(lower));
}

double ICalibrationTransformator::MassWidthToIndexWidth(double mass, double width) const {
    double lower = mass - width * 0.5;
    double upper = mass + width * 0.5;
    const double start = IndexToMass(0);
    // Also where the lower end is NaN.
    if (!(lower > start)) {
        lower = start;
        upper = start + width;
    }
    return std::abs(MassToDIndex(upper) - MassToDIndex(lower));
}

ICalibrationTransformator::Range ICalibrationTransformator::monotonicMassRange(double) const {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("monotonicMassRange() not yet implemented for this particular transformator."));
}

ICalibrationTransformator::Range ICalibrationTransformator::usableMassRange(double, double) const {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("usableMassRange() not yet implemented for this particular transformator."));
}

}  // namespace kvan::calibration
