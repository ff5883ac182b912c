#pragma once

#include <sample-analysis/packing.h>

#include <boost/filesystem/path.hpp>
#include <cstdint>

namespace kvan::sample::run {

/// The law that ties the data points of the run to m/z. The compensated ones record temperatures with each spectrum,
/// one or several; those of KITE and PSD depend on the precursor of a fragment spectrum.
enum class SampleCalibration {
    TofLinear,
    TofQuadratic,
    TofCompensated,
    TofCompensatedSeveral,
    Tof2Linear,
    Tof2Quadratic,
    Tof2Cubic,
    Tof2Compensated,
    Ftms,
    FtmsQuadratic,
    PaladinLinear,
    PaladinQuadratic,
    Linear,
    Kite1,
    Kite2,
    Psd
};

/// Which spectra have a profile.
enum class Profiles { None, Surveys, All };

/// `Both`: the cycles of survey and fragment spectra change from one to the other.
enum class Polarities { Positive, Negative, Both };

/// What was written beside the native files after the acquisition.
enum class Recalibrations { None, Database, Archive, Both };

/// What a synthetic run looks like. The same parameters give the same bytes on every machine.
struct SampleRunParameters {
    std::uint32_t spectra = 400;  ///< survey (MS^1) and fragment (MS^2) spectra together
    std::uint64_t seed = 1;
    SampleCalibration calibration = SampleCalibration::TofQuadratic;
    bool gpx = false;  ///< the law is off by some parts per million, which a polynomial takes out
    double mzLower = 100.0;
    double mzUpper = 1700.0;
    std::uint32_t points = 200'000;  ///< data points of the axis from `mzLower` to `mzUpper`, at least 2
    Profiles profiles = Profiles::Surveys;
    bool floatProfiles = false;                ///< counts stored as 32-bit floats instead of unsigned integers
    Compressor compressor = Compressor::None;  ///< of the profiles; only `ZLib` takes floats
    bool lines = true;
    std::uint32_t maxLines = 1000;  ///< the most intense lines of a spectrum that are kept
    std::uint32_t fragmentsPerSurvey = 4;
    Polarities polarities = Polarities::Positive;
    std::uint32_t segments = 2;
    std::uint16_t instrumentFamily = 1;  ///< 1, 2 and 6 to 9 are read as families with automatic MS/MS
    bool referenceCalibrations = true;   ///< in the header, for the TOF families only
    bool variables = true;               ///< voltages, temperatures, isolated masses and more, of every type
    double coelutingPeptides = 12.0;     ///< mean number of peptides that elute at one moment
    Recalibrations recalibrations = Recalibrations::None;
};

/// Writes an LC-MS/MS run of tryptic peptides into `directory`, which is made if missing, and gives the path of its
/// main file. Files of the same names are replaced, and a re-calibration that is there is removed. Memory does not grow
/// with the number of spectra.
///
/// Peptides of random sequence elute one after another. Each survey spectrum shows their isotope patterns in one to
/// four charge states, constant contaminants and chemical noise; the most intense ions that were not chosen lately are
/// fragmented into b and y ions. Peak heights carry counting noise, profiles the noise of the electronics as well. Each
/// spectrum has its own calibration, which drifts by some parts per million over the run.
///
/// With a re-calibration the calibrations in the native files give masses that are 6 parts per million too high, and
/// the re-calibration gives the right ones. The calibration database has a calibration for each spectrum or, for laws
/// that record temperatures, references that are adapted to them. The archive has a lock mass for each survey spectrum,
/// and a reference that knows of no drift for the others; its memory grows with the number of spectra.
///
/// Throws `std::invalid_argument` for parameters that make no run, such as a law for which the calibration database has
/// no model, the compressor's failure for profiles that it does
/// not support, and `std::runtime_error` for a file that cannot be
/// written.
boost::filesystem::path writeSampleRun(const boost::filesystem::path& directory,
                                       const SampleRunParameters& parameters = {});

}  // namespace kvan::sample::run

namespace kvan::sample {
using namespace run;  // callers need not know the room
}
