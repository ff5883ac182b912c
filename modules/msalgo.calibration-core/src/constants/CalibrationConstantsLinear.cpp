#include "constants/ConstantsEquality.h"

#include <calibration-core/constants/CalibrationConstantsLinear.h>

#include <algorithm>
#include <ostream>

// Constants of a straight line, mass = c1 * raw + c0 with raw = a1 * index + a0. The stored form of the law is its
// computation form; blobs hold no physical constants, so that raw is the index there.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalLinear::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalLinear>(*this);
}

bool CalibrationConstantsFunctionalLinear::IsEqual(const ICalibrationConstantsFunctional& other) const {
    return equalFunctional<ICalibrationConstantsFunctionalLinear, ICalibrationConstantsFunctionalComputationLinear>(
        *this, other);
}

void CalibrationConstantsFunctionalLinear::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalLinear[ "
         << "c0 = " << m_stored.c0 << ", c1 = " << m_stored.c1 << ", calibMode = " << m_calibMode << " ]\n";
}

std::shared_ptr<ICloneable> CalibrationConstantsPhysicalLinear::Clone() const {
    return std::make_shared<CalibrationConstantsPhysicalLinear>(*this);
}

/// Of this class only: other axes that are lines too have other numbers to keep.
bool CalibrationConstantsPhysicalLinear::IsEqual(const ICalibrationConstantsPhysical& other) const {
    const auto* line = dynamic_cast<const CalibrationConstantsPhysicalLinear*>(&other);
    return line != nullptr && relativelyEqual(m_a0, line->m_a0) && relativelyEqual(m_a1, line->m_a1);
}

void CalibrationConstantsPhysicalLinear::AdaptRawStart(double rawStart) {
    m_a0 = std::max(0.0, rawStart);
}

void CalibrationConstantsPhysicalLinear::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsPhysicalLinear[ "
         << "a0 = " << m_a0 << ", a1 = " << m_a1 << " ]\n";
}

}  // namespace kvan::calibration::Constants
