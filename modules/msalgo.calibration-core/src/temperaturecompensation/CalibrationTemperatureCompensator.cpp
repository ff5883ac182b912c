#include "temperaturecompensation/FunctionalConstantsOf.h"

#include <calibration-core/interfaces/ICalibrationConstantsFunctionalTemperatureCompensation.h>
#include <calibration-core/temperaturecompensation/CalibrationTemperatureCompensator.h>

#include <ostream>

// The calibration of a spectrum by a reference: the time axis of the spectrum, the law of the reference, adapted to the
// temperatures of the spectrum if it recorded some. A spectrum without temperatures gets the reference as it is, its
// axis included. The arguments are never changed.
namespace kvan::calibration::TemperatureCompensation {

ICalibrationTemperatureCompensator::TransformatorPtr CalibrationTemperatureCompensator::Compensate(
    const TransformatorPtr& transformator) const {
    if (!transformator || !m_reference)
        return nullptr;
    auto result = cloneObject(m_reference);
    const auto functional = functionalConstantsOf(*transformator);
    const auto compensation =
        std::dynamic_pointer_cast<ICalibrationConstantsFunctionalTemperatureCompensation>(functional);
    // A spectrum without temperatures cannot be adapted.
    if (!compensation)
        return result;
    result->SetPhysicalConstants(transformator->GetPhysicalConstants());
    compensation->AdaptToReference(*m_reference->GetFunctionalConstants(), m_referenceTemperatures,
                                   m_correctionFactors);
    result->SetFunctionalConstants(functional);
    // What comes out is the calibration of a spectrum, not a reference.
    result->SetMeasurementModeInfo(nullptr);
    return result;
}

void CalibrationTemperatureCompensator::Dump(std::ostream& sink) const {
    const auto writeValues = [&sink](const char* name, const Values& values) {
        sink << "\t" << name << "[";
        for (const double value : values)
            sink << " " << value;
        sink << " ]\n";
    };
    sink << "CalibrationTemperatureCompensator[ ";
    if (m_reference)
        m_reference->Dump(sink);
    writeValues("reference temperatures", m_referenceTemperatures);
    writeValues("correction factors", m_correctionFactors);
    sink << "]\n";
}

}  // namespace kvan::calibration::TemperatureCompensation
