#include "mass_axis.h"

#include "calibration-core/constants/CalibrationConstantsLinear.h"
#include "calibration-core/constants/CalibrationConstantsPaladin.h"
#include "calibration-core/constants/CalibrationConstantsTOF.h"
#include "calibration-core/interfaces/CalibrationTransformatorFactory.h"
#include "calibration-core/interfaces/CalibrationTransformatorFactorySerialization.h"
#include "calibration-core/interfaces/MeasurementModeInfo.h"

#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::sample {

namespace constants = kvan::calibration::Constants;
namespace transformation = kvan::calibration::Transformation;

namespace {

/// A flight path of about two metres: an ion of m/z 100 flies for 12.8 microseconds, one of 1700 for 52.8. With times
/// in nanoseconds their squares go with m/z by 1e12 / c1.
constexpr double g_tofC0 = 120.0;
constexpr double g_tofC1 = 6.1e5;
constexpr double g_tofC2 = 0.004;
constexpr double g_trapC2 = 1.5e-6;

}  // namespace

MassAxis::MassAxis(const SampleRunParameters& parameters)
    : m_family(parameters.calibration),
      m_lower(parameters.mzLower),
      m_upper(parameters.mzUpper),
      m_points(parameters.points) {
    if (!(m_lower > 0.0) || !(m_upper > m_lower) || m_points < 2)
        BOOST_THROW_EXCEPTION(std::invalid_argument("No m/z range or too few data points."));
    m_physical = physical();
}

bool MassAxis::isTof() const {
    return m_family == CalibrationFamily::TofLinear || m_family == CalibrationFamily::TofQuadratic;
}

bool MassAxis::hasReferences() const {
    return isTof();
}

MassAxis::Calibration MassAxis::calibration(double ppm) const {
    return transformation::CalibrationTransformatorFactory::instance()->createTransformator(functional(ppm),
                                                                                            m_physical);
}

Bytes MassAxis::blobOf(const Calibration& calibration) {
    Bytes blob;
    transformation::CalibrationTransformatorFactorySerialization().SerializeToBlob(calibration, blob);
    return blob;
}

Bytes MassAxis::referenceBlob(std::uint8_t polarity, std::uint8_t acquisitionMode, std::uint8_t scanMode,
                              std::uint8_t msLevel) const {
    const Calibration reference = calibration(0.0);
    reference->SetMeasurementModeInfo(
        std::make_shared<transformation::MeasurementModeInfo>(polarity, acquisitionMode, scanMode, msLevel));
    Bytes blob;
    transformation::CalibrationTransformatorFactorySerialization().SerializeReferenceToBlob(reference, blob);
    return blob;
}

MassAxis::Functional MassAxis::functional(double ppm) const {
    const double scale = 1.0 + ppm * 1e-6;
    switch (m_family) {
        case CalibrationFamily::TofLinear:
            return std::make_shared<constants::CalibrationConstantsFunctionalTOF1>(g_tofC0, g_tofC1 * scale, 0.0);
        case CalibrationFamily::TofQuadratic:
            return std::make_shared<constants::CalibrationConstantsFunctionalTOF1>(g_tofC0, g_tofC1 * scale, g_tofC2);
        case CalibrationFamily::PaladinLinear:
            return std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(0.0, scale, 0.0);
        case CalibrationFamily::PaladinQuadratic:
            return std::make_shared<constants::CalibrationConstantsFunctionalPaladin>(0.0, scale, g_trapC2);
        case CalibrationFamily::Linear: {
            const double step = (m_upper - m_lower) / (m_points - 1);
            return std::make_shared<constants::CalibrationConstantsFunctionalLinear>(m_lower * scale, step * scale);
        }
    }
    BOOST_THROW_EXCEPTION(std::invalid_argument("Unknown calibration family."));
}

MassAxis::Physical MassAxis::defaultPhysical() const {
    if (isTof())
        return std::make_shared<constants::CalibrationConstantsPhysicalTOF>();
    if (m_family == CalibrationFamily::Linear)
        return std::make_shared<constants::CalibrationConstantsPhysicalLinear>();
    return std::make_shared<constants::CalibrationConstantsPhysicalPaladin>();
}

/// The line that puts the first and the last point at the ends of the m/z range. The blob of the straight line has no
/// room for one: its law counts data points.
MassAxis::Physical MassAxis::physical() const {
    if (m_family == CalibrationFamily::Linear)
        return defaultPhysical();
    const Calibration law = transformation::CalibrationTransformatorFactory::instance()->createTransformator(
        functional(0.0), defaultPhysical());
    const double first = law->MassToRaw(m_lower);
    const double step = (law->MassToRaw(m_upper) - first) / (m_points - 1);
    if (isTof())
        return std::make_shared<constants::CalibrationConstantsPhysicalTOF>(first, step);
    return std::make_shared<constants::CalibrationConstantsPhysicalPaladin>(first / step, 1.0 / step);
}

}  // namespace kvan::sample
