#include "commands.h"
#include "text.h"

#include <sample-analysis/sample_run.h>
#include <sysutils/platform.h>

#include <CLI/CLI.hpp>
#include <array>
#include <boost/filesystem/operations.hpp>
#include <map>

// Writes a synthetic run. What the run looks like is decided by `sample-analysis`; here are the names of its
// parameters, and the care for what lies in the directory: another analysis is replaced only by --force, its cache and
// re-calibrations never stay beside new native files, and a run that could not be written whole leaves nothing.

namespace qsf2sql_tool {

namespace fs = boost::filesystem;
namespace sample = kvan::sample;

namespace {

/// The native files, and what may lie beside them.
constexpr std::array g_files = {"analysis.qsf", "analysis.qsf_idx", "analysis.qsf_xtr", "calibration.sqlite",
                                "Calibrator.ami"};

struct SampleOptions {
    std::string directory;
    bool force = false;
    bool noLines = false;
    bool noReferences = false;
    bool noVariables = false;
    sample::SampleRunParameters run;
};

/// Takes a half-written analysis away when writing it fails.
class UnfinishedAnalysis {
public:
    explicit UnfinishedAnalysis(fs::path directory) : m_directory(std::move(directory)) {}
    UnfinishedAnalysis(const UnfinishedAnalysis&) = delete;
    UnfinishedAnalysis& operator=(const UnfinishedAnalysis&) = delete;
    // Never throws: what cannot be removed stays.
    ~UnfinishedAnalysis() {
        boost::system::error_code none;
        for (const char* name : g_files) {
            if (!m_finished)
                fs::remove(m_directory / name, none);
        }
    }
    void finished() { m_finished = true; }

private:
    fs::path m_directory;
    bool m_finished = false;
};

/// A cache is recognised by the sizes of the native files, which another run of the same shape would share.
void makeRoom(const fs::path& directory, bool force) {
    for (const char* name : g_files) {
        if (!force && fs::exists(fs::symlink_status(directory / name)))
            throw std::runtime_error("there is an analysis in " + kvan::sys::pathToUtf8(directory) +
                                     " already; --force replaces it");
    }
    // Also without --force: a cache alone is no analysis.
    fs::remove(directory / "analysis.sqlite");
}

void writeSample(const SampleOptions& options, Output& output) {
    const fs::path directory = kvan::sys::pathFromUtf8(options.directory);
    // Refused before anything is written.
    makeRoom(directory, options.force);
    // Flags say what is left out, parameters what is there.
    sample::SampleRunParameters parameters = options.run;
    parameters.lines = !options.noLines;
    parameters.referenceCalibrations = !options.noReferences;
    parameters.variables = !options.noVariables;

    // From here on a failure takes the files away again.
    UnfinishedAnalysis unfinished(directory);
    sample::writeSampleRun(directory, parameters);
    unfinished.finished();
    output.write("Wrote " + std::to_string(parameters.spectra) + " spectra to " + options.directory + "\n");
    for (const char* name : g_files) {
        if (fs::exists(directory / name))
            output.write("  " + padRight(name, 18) + padLeft(byteSize(fs::file_size(directory / name)), 9) + "\n");
    }
}

template <class Value>
void addChoice(CLI::App& command, const char* name, Value& value, const std::map<std::string, Value>& choices,
               const char* description) {
    command.add_option(name, value, description)->transform(CLI::CheckedTransformer(choices, CLI::ignore_case));
}

}  // namespace

void addSampleCommand(CLI::App& app, Output& output) {
    CLI::App& command = *app.add_subcommand("sample", "Write a synthetic LC-MS/MS run");
    const auto options = std::make_shared<SampleOptions>();
    sample::SampleRunParameters& run = options->run;
    command.add_option("DIR", options->directory, "Directory of the new analysis, made if missing")->required();
    command.add_flag("--force", options->force, "Replace an analysis that is there");
    command.add_option("--spectra", run.spectra, "Number of spectra")->capture_default_str();
    command.add_option("--seed", run.seed, "Same seed, same bytes")->capture_default_str();
    command.add_option("--points", run.points, "Data points of the axis")
        ->check(CLI::Range(2U, 100'000'000U))
        ->capture_default_str();
    command.add_option("--fragments", run.fragmentsPerSurvey, "Fragment spectra for each survey spectrum")
        ->capture_default_str();
    command.add_option("--max-lines", run.maxLines, "Lines of a spectrum that are kept")->capture_default_str();
    command.add_option("--segments", run.segments, "Segments")->check(CLI::PositiveNumber)->capture_default_str();
    command.add_option("--family", run.instrumentFamily, "Code of the instrument family")->capture_default_str();
    command.add_option("--peptides", run.coelutingPeptides, "Peptides that elute at one moment")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    addChoice(
        command, "--profiles", run.profiles,
        {{"none", sample::Profiles::None}, {"surveys", sample::Profiles::Surveys}, {"all", sample::Profiles::All}},
        "Which spectra have a profile (surveys)");
    addChoice(command, "--polarity", run.polarities,
              {{"positive", sample::Polarities::Positive},
               {"negative", sample::Polarities::Negative},
               {"both", sample::Polarities::Both}},
              "Polarity (positive)");
    addChoice(command, "--calibration", run.calibration,
              {{"tof-linear", sample::SampleCalibration::TofLinear},
               {"tof-quadratic", sample::SampleCalibration::TofQuadratic},
               {"tof-compensated", sample::SampleCalibration::TofCompensated},
               {"tof-compensated-several", sample::SampleCalibration::TofCompensatedSeveral},
               {"tof2-linear", sample::SampleCalibration::Tof2Linear},
               {"tof2-quadratic", sample::SampleCalibration::Tof2Quadratic},
               {"tof2-cubic", sample::SampleCalibration::Tof2Cubic},
               {"tof2-compensated", sample::SampleCalibration::Tof2Compensated},
               {"ftms", sample::SampleCalibration::Ftms},
               {"ftms-quadratic", sample::SampleCalibration::FtmsQuadratic},
               {"paladin-linear", sample::SampleCalibration::PaladinLinear},
               {"paladin-quadratic", sample::SampleCalibration::PaladinQuadratic},
               {"linear", sample::SampleCalibration::Linear},
               {"kite1", sample::SampleCalibration::Kite1},
               {"kite2", sample::SampleCalibration::Kite2},
               {"psd", sample::SampleCalibration::Psd}},
              "Law of the m/z axis (tof-quadratic)");
    command.add_flag("--gpx", run.gpx, "Correct the masses of the law by a polynomial");
    addChoice(command, "--compressor", run.compressor,
              {{"none", sample::Compressor::None},
               {"vlc", sample::Compressor::Vlc},
               {"vli2", sample::Compressor::Vli2},
               {"zlib", sample::Compressor::ZLib}},
              "How profiles are stored (none); vlc and vli2 take integers only");
    addChoice(command, "--recalibration", run.recalibrations,
              {{"none", sample::Recalibrations::None},
               {"database", sample::Recalibrations::Database},
               {"archive", sample::Recalibrations::Archive},
               {"both", sample::Recalibrations::Both}},
              "Re-calibration beside the native files (none); the database has models for tof-*, paladin-linear and "
              "ftms* only");
    command.add_flag("--float", run.floatProfiles, "Store profiles as 32-bit floats");
    command.add_flag("--no-lines", options->noLines, "Write no peak lists");
    command.add_flag("--no-references", options->noReferences, "Write no reference calibrations");
    command.add_flag("--no-variables", options->noVariables, "Write no voltages, temperatures and other variables");
    command.footer(R"(Examples:
  qsf2sql sample demo-run
  qsf2sql sample big --spectra 1000000 --profiles none --max-lines 8
  qsf2sql sample packed --compressor vlc
  qsf2sql sample corrected --calibration tof2-cubic --gpx
  qsf2sql sample recalibrated --recalibration database
  qsf2sql sample trap --calibration paladin-quadratic --points 30000 --polarity both)");
    command.callback([options, &output] { writeSample(*options, output); });
}

}  // namespace qsf2sql_tool
