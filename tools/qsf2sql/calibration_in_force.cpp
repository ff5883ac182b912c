#include "calibration_in_force.h"

#include <qsf2sql/calibration_choice.h>
#include <sysutils/platform.h>

#include <stdexcept>

// The library chooses, by the same steps that a storage opens with, and says what became of each store and why; here it
// is put into words.

namespace qsf2sql_tool {

namespace fs = boost::filesystem;
namespace access = kvan::io::calibration;
namespace recalibration = kvan::io::qsf2sql::recalibration;

namespace {

using recalibration::g_archiveFile;
using recalibration::g_databaseFile;

std::string nameOf(const access::CalibrationStateSummary& state) {
    return "state " + state.key + " (source " + (state.source.empty() ? "not told" : state.source) + ")";
}

std::string polaritiesOf(bool positive, bool negative) {
    return positive && negative ? "positive and negative" : positive ? "positive" : "negative";
}

std::string describe(const access::CalibrationStateSummary& state) {
    return std::string(g_databaseFile) + ", " + nameOf(state) + ": " +
           (state.hasFrameCalibrators
                ? "a calibration for each spectrum"
                : "references for " + polaritiesOf(state.hasPositiveReference, state.hasNegativeReference) +
                      " spectra");
}

std::string whyNot(const recalibration::RejectedState& rejected, const access::CalibrationStateSelector& wanted) {
    const auto& [state, lacking] = rejected;
    // Numbers rather than the bare fact: a state of another run shows at once.
    if (state.hasFrameCalibrators)
        return nameOf(state) + " has calibrations of " + std::to_string(state.mappedFrames) + " spectra up to " +
               std::to_string(state.highestFrame) + " for " + std::to_string(wanted.frameCount) + " spectra";
    return nameOf(state) + " has no reference for " + polaritiesOf(lacking.positive, lacking.negative) + " spectra";
}

std::string whyNone(const std::vector<recalibration::RejectedState>& rejected,
                    const access::CalibrationStateSelector& wanted) {
    if (rejected.empty())
        return "has no state";
    std::string reasons = "no state fits";
    const char* separator = ": ";
    for (const auto& state : rejected) {
        reasons += separator;
        reasons += whyNot(state, wanted);
        separator = "; ";
    }
    return reasons;
}

CalibrationInForce findCalibration(const fs::path& directory, kvan::cppsqlite::CppSQLite3DB& cache) {
    using recalibration::Answer;
    const auto choice =
        recalibration::explainCalibration(directory, kvan::io::CalibrationPrefs::fromRawFlag(false), cache);

    CalibrationInForce result{"that of the acquisition", {}};
    if (choice.database)
        result.source = choice.state ? describe(*choice.state) : g_databaseFile;
    else if (choice.databaseAnswer == Answer::NotThere)
        result.others.emplace_back(g_databaseFile, "not there");
    else
        result.others.emplace_back(g_databaseFile, whyNone(choice.rejected, *choice.selector));

    if (choice.archive)
        result.source = g_archiveFile;
    else if (choice.archiveAnswer == Answer::NotThere)
        result.others.emplace_back(g_archiveFile, "not there");
    else
        result.others.emplace_back(g_archiveFile,
                                   std::string("not opened, as ") + g_databaseFile + " has a state that fits");
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
