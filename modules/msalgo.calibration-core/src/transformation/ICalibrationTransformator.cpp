#include "calibration-core/interfaces/ICalibrationTransformator.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::calibration {

ICalibrationTransformator::Range ICalibrationTransformator::monotonicMassRange(double) const {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("monotonicMassRange() not yet implemented for this particular transformator."));
}

ICalibrationTransformator::Range ICalibrationTransformator::usableMassRange(double, double) const {
    BOOST_THROW_EXCEPTION(
        std::runtime_error("usableMassRange() not yet implemented for this particular transformator."));
}

}  // namespace kvan::calibration
