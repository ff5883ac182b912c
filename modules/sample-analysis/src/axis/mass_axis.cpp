#include "axis/mass_axis.h"

#include "axis/tandem_laws.h"

#include <calibration-core/constants/CalibrationConstantsFTMS.h>
#include <calibration-core/constants/CalibrationConstantsLinear.h>
#include <calibration-core/constants/CalibrationConstantsPaladin.h>
#include <calibration-core/constants/CalibrationConstantsTemperatureCompensation.h>
#include <calibration-core/constants/CalibrationPolynomialGPX.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactory.h>
#include <calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h>
#include <calibration-core/interfaces/MeasurementModeInfo.h>

#include <boost/throw_exception.hpp>
#include <stdexcept>

// An axis is made in two steps. The constants of the law are fixed numbers near those of real instruments, so that
// flight times and frequencies have their usual size; then the axis of data points is laid so that the first and the
// last point meet the ends of the m/z range under the law without drift. The laws of all families thus show the same
// peptides at the same m/z, and only the spacing of the points differs.
//
// Drift and error are factors on the mass: c1 of a time of flight, the frequency of a Fourier transform and the slope
// of a trap or a line are proportional to it, so a law that is off by some parts per million is one constant off.
// Temperatures record the drift alone: a reference takes the drift out by them, and an error stays.

namespace kvan::sample::axis {

namespace constants = kvan::calibration::Constants;
namespace transformation = kvan::calibration::Transformation;

namespace {

/// A flight path of about two metres: an ion of m/z 100 flies for 12.8 microseconds, one of 1700 for 52.8. With times
/// in nanoseconds their squares go with m/z by 1e12 / c1.
constexpr double g_tofC0 = 120.0;
constexpr double g_tofC1 = 6.1e5;
constexpr double g_tofC2 = 0.004;
constexpr double g_tof2C3 = -2.5e-5;
constexpr double g_tof2C4 = 0.02;
constexpr double g_trapC2 = 1.5e-6;
/// Cyclotron frequencies in a field of seven tesla.
constexpr double g_ftmsFreqHigh = 1.0747e8;
constexpr double g_ftmsAlpha = -3.2e7;
constexpr double g_ftmsBeta = -1.5;

/// What the law gives for a mass: 3 parts per million less at 100, 1 more at 1000, as good as right at 1700.
const std::vector<double> g_apparentMass = {0.0, 1.0 - 4e-6, 9e-9, -4e-12};

/// The flight tube grows by 10 parts per million a degree; a second sensor sees a steady temperature.
constexpr double g_referenceTemperature = 25.0;
constexpr double g_expansion = 10.0;
constexpr double g_steadyTemperature = 31.5;

double scaleOf(double ppm) {
    return 1.0 + ppm * 1e-6;
}

MassAxis::Compensation compensationAt(double ppm, std::size_t sensors) {
    MassAxis::Compensation compensation{{g_referenceTemperature + ppm / g_expansion, g_steadyTemperature},
                                        {g_expansion, g_expansion / 2}};
    compensation.temperatures.resize(sensors);
    compensation.factors.resize(sensors);
    return compensation;
}

/// A spectrum stores its temperatures alone, a reference also the factors that go with them.
template <class Compensated, class Law>
std::shared_ptr<Compensated> compensated(const Law& law, double ppm, std::size_t sensors, bool reference) {
    const auto [temperatures, factors] = compensationAt(ppm, sensors);
    auto constants = std::make_shared<Compensated>(law);
    constants->SetMeasuredTemperatures(temperatures);
    constants->SetCorrectionFactors(reference ? factors : temperatures);
    return constants;
}

}  // namespace

MassAxis::MassAxis(const SampleRunParameters& parameters)
    : m_calibration(parameters.calibration),
      m_gpx(parameters.gpx),
      m_lower(parameters.mzLower),
      m_upper(parameters.mzUpper),
      m_points(parameters.points) {
    // Written so that no comparison holds for a NaN.
    if (!(m_lower > 0.0) || !(m_upper > m_lower) || m_points < 2)
        BOOST_THROW_EXCEPTION(std::invalid_argument("No m/z range or too few data points."));
    m_physical = physical();
}

bool MassAxis::isTof() const {
    return m_calibration <= SampleCalibration::Tof2Compensated;
}

bool MassAxis::isFtms() const {
    return m_calibration == SampleCalibration::Ftms || m_calibration == SampleCalibration::FtmsQuadratic;
}

bool MassAxis::isTandem() const {
    return m_calibration >= SampleCalibration::Kite1;
}

double MassAxis::peakWidth(double mz) const {
    // Resolutions 18 000 of a time of flight and 1e7 / mz of frequencies; a quarter of a unit for a trap.
    if (isTof() || isTandem())
        return mz / 18'000.0;
    return isFtms() ? mz * mz / 1e7 : 0.25;
}

bool MassAxis::hasReferences() const {
    return isTof();
}

MassAxis::Calibration MassAxis::calibration(double ppm, double error, double precursor) const {
    return transformator(functional(ppm, false, error), m_physical, scaleOf(ppm + error), precursor);
}

std::size_t MassAxis::sensors() const {
    switch (m_calibration) {
        case SampleCalibration::TofCompensated:
            return 1;
        case SampleCalibration::TofCompensatedSeveral:
        case SampleCalibration::Tof2Compensated:
            return 2;
        default:
            return 0;
    }
}

std::optional<MassAxis::Compensation> MassAxis::referenceCompensation() const {
    if (sensors() == 0)
        return {};
    return compensationAt(0.0, sensors());
}

Bytes MassAxis::blobOf(const Calibration& calibration) {
    Bytes blob;
    transformation::CalibrationTransformatorFactorySerialization().SerializeToBlob(calibration, blob);
    return blob;
}

Bytes MassAxis::referenceBlob(std::uint8_t polarity, std::uint8_t acquisitionMode, std::uint8_t scanMode,
                              std::uint8_t msLevel) const {
    const Calibration reference = transformator(functional(0.0, true), m_physical);
    reference->SetMeasurementModeInfo(
        std::make_shared<transformation::MeasurementModeInfo>(polarity, acquisitionMode, scanMode, msLevel));
    Bytes blob;
    transformation::CalibrationTransformatorFactorySerialization().SerializeReferenceToBlob(reference, blob);
    return blob;
}

Bytes MassAxis::archivedReferenceBlob(std::uint8_t polarity, std::uint8_t acquisitionMode) const {
    return hasReferences() ? referenceBlob(polarity, acquisitionMode, 0, 0) : blobOf(calibration(0.0));
}

MassAxis::Calibration MassAxis::transformator(const Functional& law, const Physical& axis, double scale,
                                              double precursor) const {
    const auto& factory = *transformation::CalibrationTransformatorFactory::instance();
    const Calibration plain =
        TandemLaw{factory.createTransformator(law, axis), scale, precursor, m_lower, m_upper}.of(m_calibration);
    if (!m_gpx)
        return plain;
    return factory.createTransformatorGPX(
        plain, std::make_shared<constants::CalibrationPolynomialGPX>(g_apparentMass, 0.0, 0.0, m_lower, m_upper, true));
}

MassAxis::Functional MassAxis::functional(double ppm, bool reference, double error) const {
    using Tof = constants::CalibrationConstantsFunctionalTOF1;
    using Tof2 = constants::CalibrationConstantsFunctionalTOF2;
    using CompensatedTof = constants::CalibrationConstantsFunctionalTOF1TemperatureCompensation;
    using CompensatedTof2 = constants::CalibrationConstantsFunctionalTOF2TemperatureCompensation;
    const double scale = scaleOf(ppm + error);
    const double tofC1 = g_tofC1 * scale;
    switch (m_calibration) {
        case SampleCalibration::TofLinear:
        case SampleCalibration::Kite1:
        case SampleCalibration::Kite2:
        case SampleCalibration::Psd:
            return std::make_shared<Tof>(g_tofC0, tofC1, 0.0);
        case SampleCalibration::TofQuadratic:
            return std::make_shared<Tof>(g_tofC0, tofC1, g_tofC2);
        case SampleCalibration::TofCompensated:
        case SampleCalibration::TofCompensatedSeveral:
            return compensated<CompensatedTof>(Tof(g_tofC0, tofC1, g_tofC2), ppm, sensors(), reference);
        case SampleCalibration::Tof2Linear:
            return std::make_shared<Tof2>(g_tofC0, tofC1, 0.0, 0.0, g_tof2C4);
        case SampleCalibration::Tof2Quadratic:
            return std::make_shared<Tof2>(g_tofC0, tofC1, g_tofC2, 0.0, g_tof2C4);
        case SampleCalibration::Tof2Cubic:
            return std::make_shared<Tof2>(g_tofC0, tofC1, g_tofC2, g_tof2C3, g_tof2C4);
        case SampleCalibration::Tof2Compensated:
            return compensated<CompensatedTof2>(Tof2(g_tofC0, tofC1, g_tofC2, g_tof2C3, g_tof2C4), ppm, sensors(),
                                                reference);
        case SampleCalibration::Ftms:
            return std::make_shared<constants::CalibrationConstantsFunctionalFTMS04>(g_ftmsBeta, g_ftmsFreqHigh * scale,
                                                                                     0);
        case SampleCalibration::FtmsQuadratic:
            return std::make_shared<constants::CalibrationConstantsFunctionalFTMS1356>(g_ftmsAlpha, g_ftmsBeta,
                                                                                       g_ftmsFreqHigh * scale, true, 1);
        case SampleCalibration::PaladinLinear:
            return std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(0.0, scale, 0.0);
        case SampleCalibration::PaladinQuadratic:
            return std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(0.0, scale, g_trapC2);
        case SampleCalibration::Linear: {
            const double step = (m_upper - m_lower) / (m_points - 1);
            return std::make_shared<constants::CalibrationConstantsFunctionalLinear>(m_lower * scale, step * scale);
        }
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument("Unknown calibration family."));
}

MassAxis::Physical MassAxis::defaultPhysical() const {
    if (isTof() || isTandem())
        return std::make_shared<constants::CalibrationConstantsPhysicalTOF>();
    if (isFtms())
        return std::make_shared<constants::CalibrationConstantsPhysicalFTMS>();
    if (m_calibration == SampleCalibration::Linear)
        return std::make_shared<constants::CalibrationConstantsPhysicalLinear>();
    return std::make_shared<constants::CalibrationConstantsPhysicalPaladin>();
}

/// The line that puts the first and the last point at the ends of the m/z range. The blob of the straight line has no
/// room for one: its law counts data points.
MassAxis::Physical MassAxis::physical() const {
    if (m_calibration == SampleCalibration::Linear)
        return defaultPhysical();
    // With the default axis raw values are times or frequencies themselves.
    const Calibration law = transformator(functional(0.0), defaultPhysical());
    const double first = law->MassToRaw(m_lower);
    const double last = law->MassToRaw(m_upper);
    // Frequencies fall with the mass: the axis begins at that of the highest m/z.
    if (isFtms())
        return std::make_shared<constants::CalibrationConstantsPhysicalFTMS>(last, first - last,
                                                                             static_cast<int>(m_points));
    const double step = (last - first) / (m_points - 1);
    if (isTof() || isTandem())
        return std::make_shared<constants::CalibrationConstantsPhysicalTOF>(first, step);
    return std::make_shared<constants::CalibrationConstantsPhysicalPaladin>(first / step, 1.0 / step);
}

}  // namespace kvan::sample::axis
