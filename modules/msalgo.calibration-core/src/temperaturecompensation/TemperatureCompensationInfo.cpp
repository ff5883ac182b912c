#include "temperaturecompensation/FunctionalConstantsOf.h"

#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/interfaces/ICalibrationTransformatorGPX.h>
#include <calibration-core/temperaturecompensation/TemperatureCompensationInfo.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

// TOF1 alone can be given temperatures afterwards: its blobs hold them in an extension, which is read when the
// transformator is there already. A correction around it stays. The order of the refusals is part of the contract.
namespace kvan::calibration::TemperatureCompensation {

std::shared_ptr<ICalibrationTransformator> addTemperatureCompensationInfo(
    const std::shared_ptr<ICalibrationTransformator>& transformator, const std::vector<double>& temperatures,
    const std::vector<double>& factors) {
    const auto functional = functionalConstantsOf(*transformator);
    if (std::dynamic_pointer_cast<ICalibrationConstantsFunctionalTemperatureCompensation>(functional))
        BOOST_THROW_EXCEPTION(std::runtime_error("Already contains temp-comp info."));
    const CalibrationFamily family = familyOf(*transformator);
    if (family == CalibrationFamily::Tof2 &&
        dynamic_cast<const ICalibrationTransformatorGPX*>(transformator.get()) != nullptr)
        BOOST_THROW_EXCEPTION(std::runtime_error("TOF2+GPX not supported."));
    const auto law = std::dynamic_pointer_cast<Constants::CalibrationConstantsFunctionalTOF1>(functional);
    if (!law || family != CalibrationFamily::Tof)
        BOOST_THROW_EXCEPTION(std::runtime_error("Non-supported strategy."));

    const auto compensated =
        std::make_shared<Constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation>(*law);
    compensated->SetMeasuredTemperatures(temperatures);
    compensated->SetCorrectionFactors(factors);
    // The argument stays as it is; a correction around the law is copied along.
    auto copy = cloneObject(transformator);
    copy->SetFunctionalConstants(compensated);
    return copy;
}

}  // namespace kvan::calibration::TemperatureCompensation
