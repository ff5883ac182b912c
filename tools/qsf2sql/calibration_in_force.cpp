#include "calibration_in_force.h"

#include <calibration-access/calibration_states.h>
#include <calibration-core/interfaces/Polarity.h>
#include <qsf2sql/calibration_choice.h>
#include <sysutils/platform.h>

#include <algorithm>
#include <stdexcept>

// The library chooses, by the same function that a storage opens with, and says what became of each store; here it is
// put into words. The states of the database are looked at once more, since a choice knows only whether one fits.

namespace qsf2sql_tool {

namespace fs = boost::filesystem;
namespace access = kvan::io::calibration;
namespace recalibration = kvan::io::qsf2sql::recalibration;

namespace {

constexpr const char* g_database = "calibration.sqlite";
constexpr const char* g_archive = "Calibrator.ami";

std::string nameOf(const access::CalibrationStateSummary& state) {
    return "state " + state.key + " (source " + (state.source.empty() ? "not told" : state.source) + ")";
}

std::string polaritiesOf(bool positive, bool negative) {
    return positive && negative ? "positive and negative" : positive ? "positive" : "negative";
}

std::string describe(const access::CalibrationStateSummary& state) {
    return std::string(g_database) + ", " + nameOf(state) + ": " +
           (state.hasFrameCalibrators
                ? "a calibration for each spectrum"
                : "references for " + polaritiesOf(state.hasPositiveReference, state.hasNegativeReference) +
                      " spectra");
}

std::string describe(const std::vector<access::CalibrationStateSummary>& states, const std::string& key) {
    // The database may have changed since the choice; then it is named without its state.
    const auto state =
        std::find_if(states.begin(), states.end(), [&key](const auto& candidate) { return candidate.key == key; });
    return state != states.end() ? describe(*state) : g_database;
}

std::string whyNot(const access::CalibrationStateSummary& state, const access::CalibrationStateSelector& wanted) {
    // Numbers rather than the bare fact: a state of another run shows at once.
    if (state.hasFrameCalibrators)
        return nameOf(state) + " has calibrations of " + std::to_string(state.mappedFrames) + " spectra up to " +
               std::to_string(state.highestFrame) + " for " + std::to_string(wanted.frameCount) + " spectra";
    const auto lacking = access::shortfallOf(state, wanted);
    return nameOf(state) + " has no reference for " + polaritiesOf(lacking.positive, lacking.negative) + " spectra";
}

std::string whyNone(const std::vector<access::CalibrationStateSummary>& states,
                    const access::CalibrationStateSelector& wanted) {
    if (states.empty())
        return "has no state";
    std::string reasons = "no state fits";
    const char* separator = ": ";
    for (const auto& state : states) {
        reasons += separator;
        reasons += whyNot(state, wanted);
        separator = "; ";
    }
    return reasons;
}

/// Also of an archive that opens and yet can give nothing to anybody, such as one of a version that nobody can read.
void requireReadable(const kvan::io::CalibratorAmiReader& archive) {
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> firstSpectrum;
    archive.getCalibrator(0, kvan::POLARITY_POSITIVE, firstSpectrum);
}

CalibrationInForce findCalibration(const fs::path& directory, kvan::cppsqlite::CppSQLite3DB& cache) {
    using recalibration::Answer;
    const auto choice =
        recalibration::chooseCalibration(directory, kvan::io::CalibrationPrefs::fromRawFlag(false), cache);
    std::vector<access::CalibrationStateSummary> states;
    // Also where a state is in force: its source and kind are printed.
    if (choice.databaseAnswer != Answer::NotThere)
        states = access::readCalibrationStates(directory);

    CalibrationInForce result{"that of the acquisition", {}};
    if (choice.database)
        result.source = describe(states, choice.database->stateKey());
    else if (choice.databaseAnswer == Answer::NotThere)
        result.others.emplace_back(g_database, "not there");
    else
        result.others.emplace_back(g_database, whyNone(states, *choice.selector));

    if (choice.archive) {
        requireReadable(*choice.archive);
        result.source = g_archive;
    } else if (choice.archiveAnswer == Answer::NotThere) {
        result.others.emplace_back(g_archive, "not there");
    } else {
        result.others.emplace_back(g_archive, std::string("not opened, as ") + g_database + " has a state that fits");
    }
    return result;
}

}  // namespace

CalibrationInForce calibrationInForce(Analysis& analysis) {
    const fs::path directory = kvan::sys::pathFromUtf8(analysis.mainFile()).parent_path();
    try {
        return findCalibration(directory, analysis.database());
    } catch (const std::exception& fault) {
        // What would fail an open: the summary goes on, and says how to read all the same.
        return {std::string("none (") + fault.what() + "); --raw-calibration reads by that of the acquisition", {}};
    }
}

}  // namespace qsf2sql_tool
