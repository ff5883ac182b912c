#include "constants/PolynomialText.h"
#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationPolynomialGPX.h>

// Numbers of a correction of masses. Equality takes the switch exactly and every number within three double epsilons,
// relatively, as constants do; c0, c2, the parent mass and the argument range count although no conversion uses them.
namespace kvan::calibration::Constants {

using Utilities::relativelyEqual;

std::shared_ptr<ICloneable> CalibrationPolynomialGPX::Clone() const {
    return std::make_shared<CalibrationPolynomialGPX>(*this);
}

int CalibrationPolynomialGPX::GetOrder() const {
    // An empty polynomial is written as one of order 0.
    return m_coefficients.empty() ? 0 : static_cast<int>(m_coefficients.size()) - 1;
}

bool CalibrationPolynomialGPX::IsEqual(const ICalibrationPolynomial& other) const {
    const auto* const gpx = dynamic_cast<const CalibrationPolynomialGPX*>(&other);
    return gpx != nullptr && m_use == gpx->m_use && relativelyEqual(m_coefficients, gpx->m_coefficients) &&
           relativelyEqual(
               {m_c0, m_c2, m_massRange.first, m_massRange.second, m_parentMass, m_argRange.first, m_argRange.second},
               {gpx->m_c0, gpx->m_c2, gpx->m_massRange.first, gpx->m_massRange.second, gpx->m_parentMass,
                gpx->m_argRange.first, gpx->m_argRange.second});
}

void CalibrationPolynomialGPX::Dump(std::ostream& sink) const {
    const auto range = [&sink](const Range& ends) { sink << ends.first << ", " << ends.second << "]\n"; };
    sink << "\tCalibrationPolynomialGPX[ \n\t\tc0 = " << m_c0 << ", c2 = " << m_c2 << ", global mass range = [";
    range(m_massRange);
    sink << "\t\tparent mass = " << m_parentMass << ", arg range = [";
    range(m_argRange);
    sink << "\t\torder = " << GetOrder() << ", coefficients = (";
    writeList(sink, m_coefficients);
    sink << ")\n\t]\n";
}

}  // namespace kvan::calibration::Constants
