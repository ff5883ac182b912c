#include "constants/ConstantsEquality.h"
#include "utilities/CalibrationTOFUtilities.h"
#include "utilities/IndexTruncation.h"

#include <calibration-core/constants/CalibrationConstantsTOF.h>

#include <ostream>

// Constants of a time-of-flight instrument. What is stored as c1 is the number of blocks and texts; laws compute with
// C1 = 1e12 / c1, which the two accessors convert both ways. c0 and c2 are the same in both views.
//
// D is derived for dumps only: no formula looks at it.
namespace kvan::calibration::Constants {

using Utilities::CalibrationTOFUtilities;
using Utilities::relativelyEqual;

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalTOF1::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalTOF1>(*this);
}

bool CalibrationConstantsFunctionalTOF1::IsEqual(const ICalibrationConstantsFunctional& other) const {
    return equalFunctional<ICalibrationConstantsFunctionalTOF1, ICalibrationConstantsFunctionalComputationQuadratic>(
        *this, other);
}

/// C1 = 1e12 / c1.
double CalibrationConstantsFunctionalTOF1::GetC1() const {
    return CalibrationTOFUtilities::StoredC1ToComputation(m_stored.c1);
}

void CalibrationConstantsFunctionalTOF1::SetC1(double value) {
    m_stored.c1 = CalibrationTOFUtilities::ComputationC1ToStored(value);
}

double CalibrationConstantsFunctionalTOF1::GetD() const {
    return 1e12 / (m_stored.c1 * m_stored.c1);
}

void CalibrationConstantsFunctionalTOF1::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalTOF1[ "
         << "c0 = " << m_stored.c0 << ", c1 = " << m_stored.c1 << ", c2 = " << m_stored.c2
         << ", calibMode = " << m_calibMode << " (corresponding to a1 = " << GetD() << ") ]\n";
}

std::shared_ptr<ICloneable> CalibrationConstantsPhysicalTOF::Clone() const {
    return std::make_shared<CalibrationConstantsPhysicalTOF>(*this);
}

bool CalibrationConstantsPhysicalTOF::IsEqual(const ICalibrationConstantsPhysical& other) const {
    const auto* tof = dynamic_cast<const ICalibrationConstantsPhysicalTOF*>(&other);
    return tof != nullptr && relativelyEqual(m_timeDelay, tof->GetTimeDelay()) &&
           relativelyEqual(m_timeBase, tof->GetTimeBase());
}

void CalibrationConstantsPhysicalTOF::AdaptRawStart(double rawStart) {
    // Slack against rounding, in raw units: a start that lies on the grid stays there.
    constexpr double slack = 1e-8;
    // The start is kept on the grid of samples: whole steps, corrected by one where the division was rounded.
    const std::int32_t steps = Utilities::truncateToIndex((rawStart - m_timeDelay) / m_timeBase);
    double delay = steps * m_timeBase + m_timeDelay;
    if (rawStart - slack > delay + m_timeBase)
        delay = delay + m_timeBase;
    if (delay > rawStart + slack)
        delay = delay - m_timeBase;
    m_timeDelay = delay;
}

void CalibrationConstantsPhysicalTOF::AssimilateIndexOffset(double indexOffset) {
    m_timeDelay = indexOffset * m_timeBase + m_timeDelay;
}

void CalibrationConstantsPhysicalTOF::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsPhysicalTOF[ "
         << "time delay = " << m_timeDelay << ", time base = " << m_timeBase << " ]\n";
}

}  // namespace kvan::calibration::Constants
