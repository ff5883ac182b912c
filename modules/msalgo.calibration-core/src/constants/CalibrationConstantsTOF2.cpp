#include "constants/ConstantsEquality.h"
#include "utilities/CalibrationTOFUtilities.h"

#include <calibration-core/constants/CalibrationConstantsTOF2.h>

#include <ostream>

// Constants of a time-of-flight instrument, second generation: the numbers of the first one, a cubic coefficient c3 and
// the shift c4 that is added to a mass before the law sees it. c1 is converted as in the first generation.
namespace kvan::calibration::Constants {

using Utilities::CalibrationTOFUtilities;

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalTOF2::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalTOF2>(*this);
}

bool CalibrationConstantsFunctionalTOF2::IsEqual(const ICalibrationConstantsFunctional& other) const {
    // The shift is no part of the cubic view: TOF1 constants with the same numbers are not equal.
    const auto* const shift = dynamic_cast<const ICalibrationConstantsFunctionalComputationShift*>(&other);
    return equalFunctional<ICalibrationConstantsFunctionalTOF2, ICalibrationConstantsFunctionalComputationCubic>(
               *this, other) &&
           shift != nullptr && Utilities::relativelyEqual(m_c4, shift->GetShift());
}

/// C1 = 1e12 / c1.
double CalibrationConstantsFunctionalTOF2::GetC1() const {
    return CalibrationTOFUtilities::StoredC1ToComputation(m_stored.c1);
}

void CalibrationConstantsFunctionalTOF2::SetC1(double value) {
    m_stored.c1 = CalibrationTOFUtilities::ComputationC1ToStored(value);
}

double CalibrationConstantsFunctionalTOF2::GetD() const {
    return 1e12 / (m_stored.c1 * m_stored.c1);
}

void CalibrationConstantsFunctionalTOF2::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalTOF2[ "
         << "c0 = " << m_stored.c0 << ", c1 = " << m_stored.c1 << ", c2 = " << m_stored.c2 << ", c3 = " << m_c3
         << ", c4 = " << m_c4 << ", calibMode = " << m_calibMode << " ]\n";
}

}  // namespace kvan::calibration::Constants
