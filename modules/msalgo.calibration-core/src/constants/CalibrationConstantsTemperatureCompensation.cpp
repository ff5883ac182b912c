#include "utilities/RelativeEquality.h"

#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <ostream>
#include <stdexcept>
#include <string>

// A flight path grows with temperature. With measured and reference temperatures in degrees and factors in parts per
// million a degree,
//
//     k = sum((measured[i] - reference[i]) * factor[i]) / 1e6 + 1
//
// and a spectrum computes with C0 of the reference and with its C1, C2 and C3 divided by k, in the computation view.
//
// Both generations adapt alike, but not their failures: where the numbers of temperatures differ, TOF1 keeps its
// constants and changes the mode only, TOF2 throws with nothing changed. The texts differ too, and are given.
namespace kvan::calibration {

ENUM_TEMPERATURE_COMPENSATION_MODE ICalibrationConstantsFunctionalTemperatureCompensation::compensationModeFromInt(
    int mode) {
    if (mode < TEMPERATURE_COMPENSATION_NONE || mode > TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL)
        BOOST_THROW_EXCEPTION(std::runtime_error(
            "ICalibrationConstantsFunctionalTemperatureCompensation::compensationModeFromInt: No such compensation "
            "mode: " +
            std::to_string(mode)));
    return static_cast<ENUM_TEMPERATURE_COMPENSATION_MODE>(mode);
}

namespace Constants {

namespace {

using Values = std::vector<double>;

/// The families' messages differ in everything but their meaning.
struct AdaptationTexts {
    const char* otherFamily;
    const char* noTemperatures;
};

constexpr AdaptationTexts g_tof1Texts = {
    "kvan::calibration::Transformation::CalibrationConstantsFunctionalTOF1TemperatureCompensation::AdaptToReference: "
    "referenceConstants is not of type ICalibrationConstantsFunctionalTOF1",
    "CalibrationConstantsFunctionalTOF1TemperatureCompensation::AdaptToReference: empty temperatures vector"};
constexpr AdaptationTexts g_tof2Texts = {
    "kvan::calibration::Transformation::CalibrationConstantsFunctionalTOF2TemperatureCompensation::AdaptToReference:  "
    "is not of type ICalibrationConstantsFunctionalTOF1",
    "CalibrationConstantsFunctionalTOF2TemperatureCompensation::AdaptToReference: Temperature vector is empty."};

template <class Law>
const Law& referenceLaw(const ICalibrationConstantsFunctional& reference, const Values& measured,
                        const AdaptationTexts& texts) {
    const auto* const law = dynamic_cast<const Law*>(&reference);
    if (law == nullptr)
        BOOST_THROW_EXCEPTION(std::invalid_argument(texts.otherFamily));
    if (measured.empty())
        BOOST_THROW_EXCEPTION(std::runtime_error(texts.noTemperatures));
    return *law;
}

ENUM_TEMPERATURE_COMPENSATION_MODE adaptedMode(const Values& measured) {
    return measured.size() == 1 ? TEMPERATURE_COMPENSATION_ADAPTED_ONE : TEMPERATURE_COMPENSATION_ADAPTED_SEVERAL;
}

bool sameSize(const Values& measured, const Values& reference, const Values& factors) {
    return reference.size() == measured.size() && factors.size() == measured.size();
}

/// k, what the coefficients of a reference are divided by; the factors are parts per million a degree.
double expansion(const Values& measured, const Values& reference, const Values& factors) {
    double sum = 0.0;
    for (std::size_t i = 0; i < measured.size(); ++i)
        sum += (measured[i] - reference[i]) * factors[i];
    return sum / 1e6 + 1.0;
}

void writeValues(std::ostream& sink, const char* name, const Values& values) {
    sink << name << ": (";
    const char* separator = "";
    for (const double value : values) {
        sink << separator << value;
        separator = ", ";
    }
    sink << ")";
}

}  // namespace

template <class Law>
bool TemperatureCompensated<Law>::IsEqual(const ICalibrationConstantsFunctional& other) const {
    if (!Law::IsEqual(other))
        return false;
    const auto* const compensated = dynamic_cast<const TemperatureCompensated*>(&other);
    // A plain law with the same numbers computes alike, and counts as equal.
    return compensated == nullptr ||
           (m_mode == compensated->m_mode && Utilities::relativelyEqual(m_measTemp, compensated->m_measTemp) &&
            Utilities::relativelyEqual(m_correctionFactors, compensated->m_correctionFactors));
}

template class TemperatureCompensated<CalibrationConstantsFunctionalTOF1>;
template class TemperatureCompensated<CalibrationConstantsFunctionalTOF2>;

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalTOF1TemperatureCompensation::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalTOF1TemperatureCompensation>(*this);
}

void CalibrationConstantsFunctionalTOF1TemperatureCompensation::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalTOF1TemperatureCompensation[ compensation mode = "
         << GetCompensationMode();
    writeValues(sink, ", temperatures", GetMeasuredTemperatures());
    writeValues(sink, ", correction factors", GetCorrectionFactors());
    sink << "\n";
    CalibrationConstantsFunctionalTOF1::Dump(sink);
}

void CalibrationConstantsFunctionalTOF1TemperatureCompensation::AdaptToReference(
    const ICalibrationConstantsFunctional& reference, const Values& referenceTemperatures,
    const Values& correctionFactors) {
    const Values& measured = GetMeasuredTemperatures();
    const auto& law = referenceLaw<CalibrationConstantsFunctionalTOF1>(reference, measured, g_tof1Texts);
    SetCompensationMode(adaptedMode(measured));
    // Only the mode has changed: a spectrum of other sensors keeps its own law.
    if (!sameSize(measured, referenceTemperatures, correctionFactors))
        return;
    const double k = expansion(measured, referenceTemperatures, correctionFactors);
    SetC0(law.GetC0());
    SetC1(law.GetC1() / k);
    SetC2(law.GetC2() / k);
}

std::shared_ptr<ICloneable> CalibrationConstantsFunctionalTOF2TemperatureCompensation::Clone() const {
    return std::make_shared<CalibrationConstantsFunctionalTOF2TemperatureCompensation>(*this);
}

void CalibrationConstantsFunctionalTOF2TemperatureCompensation::Dump(std::ostream& sink) const {
    sink << "\tCalibrationConstantsFunctionalTOF2TemperatureCompensation[ compensation mode = "
         << GetCompensationMode();
    writeValues(sink, " temperatures", GetMeasuredTemperatures());
    writeValues(sink, ", correction factors", GetCorrectionFactors());
    sink << "\n";
    CalibrationConstantsFunctionalTOF2::Dump(sink);
}

void CalibrationConstantsFunctionalTOF2TemperatureCompensation::AdaptToReference(
    const ICalibrationConstantsFunctional& reference, const Values& referenceTemperatures,
    const Values& correctionFactors) {
    const Values& measured = GetMeasuredTemperatures();
    const auto& law = referenceLaw<CalibrationConstantsFunctionalTOF2>(reference, measured, g_tof2Texts);
    if (!sameSize(measured, referenceTemperatures, correctionFactors))
        BOOST_THROW_EXCEPTION(std::runtime_error(
            "CalibrationConstantsFunctionalTOF2TemperatureCompensation::AdaptToReference: Parameter vectors have "
            "inappropriate size: \t\t\t\t\tm_measTemp.size() = " +
            std::to_string(measured.size()) +
            ", referenceTemperatures.size() = " + std::to_string(referenceTemperatures.size()) +
            ", temperatureFactors.size() = " + std::to_string(correctionFactors.size())));
    const double k = expansion(measured, referenceTemperatures, correctionFactors);
    SetCompensationMode(adaptedMode(measured));
    SetC0(law.GetC0());
    SetC1(law.GetC1() / k);
    SetC2(law.GetC2() / k);
    SetC3(law.GetC3() / k);
    SetShift(law.GetShift());
}

}  // namespace Constants

}  // namespace kvan::calibration
