#include "constants/ConstantsEquality.h"

#include <calibration-core/constants/CalibrationConstantsPaladin.h>

#include <ostream>

// Constants of an ion trap: mass is a polynomial in raw, and raw a mass scale of so many measurements a unit. The line
// of the computation view is a1 = 1 / measurements, a0 = begin / measurements. A new start of the axis is moved by one
// measurement where rounding would leave it on the wrong side of `rawStart`.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalPaladin::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalPaladin>(*this);
}

bool CalibrationConstantsFunctionalPaladin::IsEqual(const ICalibrationConstantsFunctional& other) const {
    return equalFunctional<ICalibrationConstantsFunctionalPaladin, ICalibrationConstantsFunctionalComputationQuadratic>(
        *this, other);
}

void CalibrationConstantsFunctionalPaladin::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalPaladin[ "
         << "c0 = " << m_stored.c0 << ", c1 = " << m_stored.c1 << ", c2 = " << m_stored.c2
         << ", calibMode = " << m_calibMode << " ]\n";
}

std::shared_ptr<ICloneable> CalibrationConstantsPhysicalPaladin::Clone() const {
    return std::make_shared<CalibrationConstantsPhysicalPaladin>(*this);
}

bool CalibrationConstantsPhysicalPaladin::IsEqual(const ICalibrationConstantsPhysical& other) const {
    const auto* paladin = dynamic_cast<const ICalibrationConstantsPhysicalPaladin*>(&other);
    return paladin != nullptr && relativelyEqual(m_beginRawMass, paladin->GetBeginRawMass()) &&
           relativelyEqual(m_measurementsPerRawMass, paladin->GetMeasurementsPerRawMass());
}

void CalibrationConstantsPhysicalPaladin::AdaptRawStart(double rawStart) {
    const double perMass = m_measurementsPerRawMass;
    // Algebra would cancel the two begins, rounding does not: the bits are those of this order.
    double begin = m_beginRawMass + (perMass * rawStart - m_beginRawMass);
    if ((begin + 1.0) / perMass < rawStart)
        begin = begin + 1.0;
    if (rawStart < begin / perMass)
        begin = begin - 1.0;
    m_beginRawMass = begin;
}

void CalibrationConstantsPhysicalPaladin::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsPhysicalPaladin[ "
         << "measurements per raw mass = " << m_measurementsPerRawMass << ", begin raw mass = " << m_beginRawMass
         << " ]\n";
}

}  // namespace kvan::calibration::Constants
