#include "calibration_in_force.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibration-access/calibration_states.h>
#include <calibrator-ami-reader/calibrator_ami_reader.h>
#include <sysutils/platform.h>

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <stdexcept>

namespace qsf2sql_tool {

namespace fs = boost::filesystem;
namespace access = kvan::io::calibration;

namespace {

constexpr const char* g_database = "calibration.sqlite";
constexpr const char* g_archive = "Calibrator.ami";

/// What a state must fit: the number of the last spectrum and the polarities that occur.
access::CalibrationStateSelector selectorFor(Database& cache) {
    access::CalibrationStateSelector selector;
    Query query(cache,
                "SELECT (SELECT max(Id) FROM Spectra), total(coalesce(Polarity, 0) <> 1), total(Polarity = 1) "
                "FROM AcquisitionKeys");
    query.next();
    selector.setAnalysisInfo(query.integer(0).value_or(0), query.integer(1) > 0, query.integer(2) > 0);
    if (!selector.hasPositive && !selector.hasNegative)
        throw std::runtime_error("Missing polarity information!");
    return selector;
}

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

std::string whyNot(const access::CalibrationStateSummary& state, const access::CalibrationStateSelector& wanted) {
    if (state.hasFrameCalibrators)
        return nameOf(state) + " has calibrations of " + std::to_string(state.mappedFrames) + " spectra up to " +
               std::to_string(state.highestFrame) + " for " + std::to_string(wanted.frameCount) + " spectra";
    return nameOf(state) + " has no reference for " +
           polaritiesOf(wanted.hasPositive && !state.hasPositiveReference,
                        wanted.hasNegative && !state.hasNegativeReference) +
           " spectra";
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

/// Also of an archive that opens and yet can give nothing to anybody.
void requireReadable(const fs::path& archive) {
    kvan::io::CalibratorAmiReader reader;
    if (!reader.open(archive))
        throw std::runtime_error("Couldn't open AMI file " + kvan::sys::pathToUtf8(archive));
    std::shared_ptr<kvan::calibration::ICalibrationTransformator> firstSpectrum;
    reader.getCalibrator(0, kvan::POLARITY_POSITIVE, firstSpectrum);
}

CalibrationInForce findCalibration(const fs::path& directory, Database& cache) {
    CalibrationInForce result;
    const auto selector = selectorFor(cache);
    boost::system::error_code ignored;
    const bool hasArchive = fs::status(directory / g_archive, ignored).type() != fs::file_not_found;
    const auto states = access::readCalibrationStates(directory);
    if (const auto reader = access::CalibrationReaderSqlite::find(directory, selector)) {
        const auto state = std::find_if(states.begin(), states.end(), [&reader](const auto& candidate) {
            return candidate.key == reader->stateKey();
        });
        result.source = state != states.end() ? describe(*state) : g_database;
        result.others.emplace_back(
            g_archive,
            hasArchive ? std::string("not opened, as ") + g_database + " has a state that fits" : "not there");
        return result;
    }
    result.others.emplace_back(g_database,
                               fs::exists(directory / g_database) ? whyNone(states, selector) : "not there");
    if (!hasArchive) {
        result.source = "that of the acquisition";
        result.others.emplace_back(g_archive, "not there");
        return result;
    }
    requireReadable(directory / g_archive);
    result.source = g_archive;
    return result;
}

}  // namespace

CalibrationInForce calibrationInForce(Analysis& analysis) {
    const fs::path directory = kvan::sys::pathFromUtf8(analysis.mainFile()).parent_path();
    try {
        return findCalibration(directory, analysis.database());
    } catch (const std::exception& fault) {
        return {std::string("none (") + fault.what() + "); --raw-calibration reads by that of the acquisition", {}};
    }
}

}  // namespace qsf2sql_tool
