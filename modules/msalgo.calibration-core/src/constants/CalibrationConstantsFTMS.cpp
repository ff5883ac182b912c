#include "constants/ConstantsEquality.h"
#include "constants/FtmsModes.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>

#include <boost/throw_exception.hpp>
#include <ostream>
#include <stdexcept>
#include <string>

// Constants of Fourier transform instruments. The functional ones come in two classes by the calibration mode, which
// says how the law is built: with alpha or without. The physical ones derive the line between index and frequency from
// the same mode, so both must agree; the transformator sees to that. A class keeps its mode when it is given one of the
// other.
namespace kvan::calibration::Constants {

namespace {

using Utilities::relativelyEqual;

bool isLinearMode(int mode) {
    return ftmsModeOf(mode).law == FtmsLaw::Linear;
}

bool isQuadraticMode(int mode) {
    const FtmsLaw law = ftmsModeOf(mode).law;
    return law == FtmsLaw::Quadratic || law == FtmsLaw::ConstantsOnly;
}

/// The raw mode moves the axis, so that constants with different ones are not equal.
bool equalRawMode(int mode, const ICalibrationConstantsFunctional& other) {
    const auto* const ftms = dynamic_cast<const ICalibrationConstantsFunctionalFTMS*>(&other);
    return ftms != nullptr && ftms->GetFTMSRawMode() == mode;
}

FtmsAxis axisOf(int calibMode, const char* operation) {
    const FtmsAxis axis = ftmsModeOf(calibMode).axis;
    if (axis == FtmsAxis::Unknown)
        BOOST_THROW_EXCEPTION(
            std::invalid_argument(std::string("CalibrationConstantsPhysicalFTMS::") + operation +
                                  "(): invalid calibration constants: icr mode unknown. Expected 0..6, but got " +
                                  std::to_string(calibMode)));
    return axis;
}

/// Steps of a spanned axis.
double stepsOf(FtmsAxis axis, int size) {
    return axis == FtmsAxis::EndToEnd ? size - 1.0 : size;
}

}  // namespace

CalibrationConstantsFunctionalFTMS04::CalibrationConstantsFunctionalFTMS04(double beta, double freqHigh, int calibMode,
                                                                           int ftmsRawMode)
    : m_beta(beta), m_freqHigh(freqHigh), m_ftmsRawMode(ftmsRawMode) {
    SetCalibMode(calibMode);
}

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalFTMS04::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalFTMS04>(*this);
}

void CalibrationConstantsFunctionalFTMS04::SetCalibMode(int mode) {
    if (!isLinearMode(mode))
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationConstantsFunctionalFTMS04::SetCalibMode: Invalid FTMS mode: 0 or 4 are possible"));
    m_calibMode = mode;
}

bool CalibrationConstantsFunctionalFTMS04::IsEqual(const ICalibrationConstantsFunctional& other) const {
    return equalFunctional<ICalibrationConstantsFunctionalFTMS04, ICalibrationConstantsFunctionalComputationLinear>(
               *this, other) &&
           equalRawMode(m_ftmsRawMode, other);
}

void CalibrationConstantsFunctionalFTMS04::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalFTMS04[ "
         << "\t\tbeta = " << m_beta << ", freq high = " << m_freqHigh << ", calib mode = " << m_calibMode
         << ", ftms raw mode = " << m_ftmsRawMode << " ]\n";
}

CalibrationConstantsFunctionalFTMS1356::CalibrationConstantsFunctionalFTMS1356(double alpha, double beta,
                                                                               double freqHigh, bool quadraticFlag,
                                                                               int calibMode, int ftmsRawMode)
    : m_alpha(alpha),
      m_beta(beta),
      m_freqHigh(freqHigh),
      m_quadraticFlag(quadraticFlag),
      m_calibMode(calibMode),
      m_ftmsRawMode(ftmsRawMode) {
    if (!isQuadraticMode(calibMode))
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationConstantsFunctionalFTMS1356 c'tor: Invalid FTMS Mode: 1, 3, 5 and 6 are valid"));
}

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalFTMS1356::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalFTMS1356>(*this);
}

void CalibrationConstantsFunctionalFTMS1356::SetCalibMode(int mode) {
    if (!isQuadraticMode(mode))
        BOOST_THROW_EXCEPTION(std::invalid_argument(
            "CalibrationConstantsFunctionalFTMS1356::SetCalibMode: Invalid FTMS Mode: 1, 3, 5 and 6 are valid"));
    m_calibMode = mode;
}

bool CalibrationConstantsFunctionalFTMS1356::IsEqual(const ICalibrationConstantsFunctional& other) const {
    return equalFunctional<ICalibrationConstantsFunctionalFTMS1356,
                           ICalibrationConstantsFunctionalComputationQuadratic>(*this, other) &&
           equalRawMode(m_ftmsRawMode, other);
}

void CalibrationConstantsFunctionalFTMS1356::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalFTMS1356[ "
         << "\t\talpha = " << m_alpha << ", beta = " << m_beta << ", freq high = " << m_freqHigh
         << ", calib mode = " << m_calibMode << ", ftms raw mode = " << m_ftmsRawMode << " ]\n";
}

std::shared_ptr<ICloneable> CalibrationConstantsPhysicalFTMS::Clone() const {
    return std::make_shared<CalibrationConstantsPhysicalFTMS>(*this);
}

bool CalibrationConstantsPhysicalFTMS::IsEqual(const ICalibrationConstantsPhysical& other) const {
    const auto* const ftms = dynamic_cast<const ICalibrationConstantsPhysicalFTMS*>(&other);
    return ftms != nullptr && m_calibMode == ftms->GetCalibMode() && m_ftmsRawMode == ftms->GetFTMSRawMode() &&
           m_size == ftms->GetSize() && relativelyEqual(m_freqLow, ftms->GetFreqLow()) &&
           relativelyEqual(m_freqWidth, ftms->GetFreqWidth());
}

double CalibrationConstantsPhysicalFTMS::GetA0() const {
    // Index 0 has the highest frequency.
    return axisOf(m_calibMode, "GetA0") == FtmsAxis::Index ? 0.0 : m_freqWidth + base();
}

double CalibrationConstantsPhysicalFTMS::GetA1() const {
    const FtmsAxis axis = axisOf(m_calibMode, "GetA1");
    return axis == FtmsAxis::Index ? 1.0 : m_freqWidth * -1.0 / stepsOf(axis, m_size);
}

void CalibrationConstantsPhysicalFTMS::AssimilateIndexOffset(double indexOffset) {
    const FtmsAxis axis = axisOf(m_calibMode, "AssimilateIndexOffset");
    if (axis == FtmsAxis::Index)
        return;
    // The offset goes into the low frequency, which counts from now on whatever the raw mode was.
    m_freqLow = base() - indexOffset * m_freqWidth / stepsOf(axis, m_size);
    m_ftmsRawMode = 0;
}

void CalibrationConstantsPhysicalFTMS::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsPhysicalFTMS[ "
         << "\t\tfreq low = " << m_freqLow << ", freq width = " << m_freqWidth << ", size = " << m_size
         << "\t\tcalib mode = " << m_calibMode << ", ftms raw mode = " << m_ftmsRawMode << "\t\ta0 = " << GetA0()
         << ", a1 = " << GetA1() << " ]\n";
}

}  // namespace kvan::calibration::Constants
