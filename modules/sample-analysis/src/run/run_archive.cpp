#include "run/run_archive.h"

namespace kvan::sample::run {

namespace {

/// Of contaminants that are in every survey spectrum.
const std::vector<double> g_lockMasses = {391.2843, 445.1200, 519.1388};

}  // namespace

void RunArchive::add(const MassAxis::Calibration& lockMass) {
    // A spectrum without a lock mass keeps its place: the archive counts entries, not numbers.
    ArchivedLockMass& spectrum = m_spectra.emplace_back();
    if (lockMass)
        spectrum.calibrator = ArchivedCalibrator{.blob = MassAxis::blobOf(lockMass)};
}

void RunArchive::write(const boost::filesystem::path& directory, const std::vector<std::uint8_t>& polarities,
                       std::uint8_t acquisitionMode) const {
    ArchivedReferences references;
    for (const std::uint8_t polarity : polarities) {
        // The same calibrator stands in the reference and in the note on how it was made.
        const ArchivedCalibrator calibrator{.blob = m_axis.archivedReferenceBlob(polarity, acquisitionMode)};
        references.references.push_back({.polarity = polarity, .calibrator = calibrator});
        references.stati.push_back({.description = "calibrated after the run", .calibrator = calibrator});
    }
    writeArchive(directory, {.references = references,
                             .lockMasses = {.params = {{.masses = g_lockMasses}}, .spectra = m_spectra}});
}

}  // namespace kvan::sample::run
