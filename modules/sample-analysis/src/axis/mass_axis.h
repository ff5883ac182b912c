#pragma once

#include <calibration-core/interfaces/ICalibrationTransformator.h>
#include <sample-analysis/analysis_data.h>
#include <sample-analysis/sample_run.h>

#include <optional>
#include <vector>

namespace kvan::sample::axis {

/// The axis of data points of a run: index 0 stands at the lower m/z and the last index at the upper one, by the law of
/// the family. Time-of-flight axes count nanoseconds.
class MassAxis {
public:
    using Calibration = std::shared_ptr<kvan::calibration::ICalibrationTransformator>;

    explicit MassAxis(const SampleRunParameters& parameters);

    /// The law in force while the instrument gives masses that are `ppm` parts per million too high. `error` are parts
    /// per million by which that law is taken for higher than it is; temperatures know nothing of them. `precursor` is
    /// the m/z that was isolated, 0.0 in a survey spectrum.
    Calibration calibration(double ppm, double error = 0.0, double precursor = 0.0) const;

    /// For the families that record temperatures, those of the reference and the factors that take the drift out.
    struct Compensation {
        std::vector<double> temperatures;
        std::vector<double> factors;
    };
    std::optional<Compensation> referenceCompensation() const;

    static Bytes blobOf(const Calibration& calibration);
    /// The law without drift as the reference for one kind of spectrum.
    Bytes referenceBlob(std::uint8_t polarity, std::uint8_t acquisitionMode, std::uint8_t scanMode,
                        std::uint8_t msLevel) const;
    /// The same of any family: those without blobs for references give an ordinary one.
    Bytes archivedReferenceBlob(std::uint8_t polarity, std::uint8_t acquisitionMode) const;

    /// Whether the family has blobs for reference calibrations.
    bool hasReferences() const;

    /// Full width at half maximum, in m/z: a time of flight is measured with constant resolution, an ion trap has peaks
    /// of constant width, and frequencies have a width of their own.
    double peakWidth(double mz) const;

    double lower() const { return m_lower; }
    double upper() const { return m_upper; }
    std::uint32_t points() const { return m_points; }

private:
    using Functional = std::shared_ptr<kvan::calibration::ICalibrationConstantsFunctional>;
    using Physical = std::shared_ptr<kvan::calibration::ICalibrationConstantsPhysical>;

    bool isTof() const;
    /// Families that depend on the precursor, on the time axis of a plain time of flight.
    bool isTandem() const;
    bool isFtms() const;
    /// The law while the instrument drifts by `ppm`; of a reference the temperatures and factors that take the drift
    /// out again.
    Functional functional(double ppm, bool reference = false, double error = 0.0) const;
    /// The transformator of the law, with the correction of the run around it.
    Calibration transformator(const Functional& law, const Physical& axis, double scale = 1.0,
                              double precursor = 0.0) const;
    std::size_t sensors() const;
    Physical defaultPhysical() const;
    Physical physical() const;

    SampleCalibration m_calibration;
    bool m_gpx;
    double m_lower;
    double m_upper;
    std::uint32_t m_points;
    Physical m_physical;
};

}  // namespace kvan::sample::axis
