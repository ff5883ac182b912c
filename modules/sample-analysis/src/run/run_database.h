#pragma once

#include "axis/mass_axis.h"

#include <sample-analysis/calibration_database_writer.h>

namespace kvan::sample::run {

using axis::MassAxis;

/// The calibration database of a run whose masses were found to be wrong afterwards: a calibration for each spectrum
/// or, for the families that record temperatures, references that are adapted to those of a spectrum.
class RunDatabase {
public:
    /// Throws `std::invalid_argument` for a family of which a calibration database can hold nothing.
    RunDatabase(const boost::filesystem::path& directory, const SampleRunParameters& parameters, const MassAxis& axis);

    /// The next spectrum, with the right calibration.
    void add(const MassAxis::Calibration& calibration);

    void finish() { m_writer.finish(); }

private:
    CalibrationDatabaseWriter m_writer;
    bool m_hasFrameCalibrators;
    std::int64_t m_spectra = 0;
};

}  // namespace kvan::sample::run
