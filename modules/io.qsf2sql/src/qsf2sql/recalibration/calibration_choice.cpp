#include <calibration-core/interfaces/Polarity.h>
#include <cppsqlite/CppSQLite3.h>
#include <cppsqlite/simple_checked_query.h>
#include <qsf2sql/calibration_choice.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

// The database comes first because it holds what was found later: a state of it was made out of the whole run, and with
// its source on record. The archive is not even opened where a state fits, so a damaged archive does no harm then.
// Apart from that a store that is there and cannot be read ends the open: falling back to another calibration in
// silence would give masses that are wrong by parts per million, which nobody would see.
//
// Tolerated: a database without a state that fits the analysis, which counts as one that is not there.

namespace kvan::io::qsf2sql::recalibration {

namespace {

namespace fs = boost::filesystem;

/// Anything but missing counts as there, also what may not be looked at: the reader then says what is wrong with it.
bool isThere(const fs::path& file) {
    boost::system::error_code ignored;
    return fs::status(file, ignored).type() != fs::file_not_found;
}

/// With what the analysis asks of a state. A polarity other than negative, also a missing one, counts as positive.
calibration::CalibrationStateSelector completed(calibration::CalibrationStateSelector selector,
                                                cppsqlite::CppSQLite3DB& cache) {
    if (!selector.needsAnalysisInfo())
        return selector;
    bool positive = false;
    bool negative = false;
    auto polarities = cache.execQuery("SELECT Polarity FROM AcquisitionKeys");
    if (polarities.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error("Missing polarity information!"));
    for (; !polarities.eof(); polarities.nextRow())
        (polarities.getIntField(0) == POLARITY_NEGATIVE ? negative : positive) = true;
    polarities.finalize();
    const auto spectra = cppsqlite::simpleCheckedQuery<std::int64_t>(cache, "SELECT MAX(Id) FROM Spectra");
    selector.setAnalysisInfo(spectra, positive, negative);
    return selector;
}

std::unique_ptr<CalibratorAmiReader> openArchive(const fs::path& file) {
    auto archive = std::make_unique<CalibratorAmiReader>();
    if (!archive->open(file))
        BOOST_THROW_EXCEPTION(std::runtime_error("Couldn't open AMI file " + sys::pathToUtf8(file)));
    return archive;
}

using FindState = std::function<std::unique_ptr<calibration::CalibrationReaderSqlite>(
    const fs::path& directory, const calibration::CalibrationStateSelector& selector)>;

CalibrationChoice choose(const fs::path& directory, const CalibrationPrefs& prefs, cppsqlite::CppSQLite3DB& cache,
                         const std::function<void(Store)>& foundNothingIn, const FindState& findState) {
    CalibrationChoice choice;
    if (prefs.stateSelector) {
        choice.selector = completed(*prefs.stateSelector, cache);
        choice.database = findState(directory, *choice.selector);
        choice.databaseAnswer = choice.database                       ? Answer::InForce
                                : isThere(directory / g_databaseFile) ? Answer::NoneFits
                                                                      : Answer::NotThere;
        if (!choice.database && foundNothingIn)
            foundNothingIn(Store::Database);
    }
    if (prefs.useCalibratorAmi) {
        const fs::path file = directory / g_archiveFile;
        if (!isThere(file)) {
            choice.archiveAnswer = Answer::NotThere;
        } else if (choice.database) {
            choice.archiveAnswer = Answer::NotOpened;
        } else {
            choice.archive = openArchive(file);
            choice.archiveAnswer = Answer::InForce;
        }
        if (choice.isNative() && foundNothingIn)
            foundNothingIn(Store::Archive);
    }
    return choice;
}

}  // namespace

CalibrationChoice chooseCalibration(const fs::path& directory, const CalibrationPrefs& prefs,
                                    cppsqlite::CppSQLite3DB& cache, const std::function<void(Store)>& foundNothingIn) {
    return choose(directory, prefs, cache, foundNothingIn, [](const auto& where, const auto& selector) {
        return calibration::CalibrationReaderSqlite::find(where, selector);
    });
}

CalibrationChoice explainCalibration(const fs::path& directory, const CalibrationPrefs& prefs,
                                     cppsqlite::CppSQLite3DB& cache) {
    std::vector<calibration::CalibrationStateSummary> states;
    CalibrationChoice choice = choose(directory, prefs, cache, {}, [&states](const auto& where, const auto& selector) {
        return calibration::CalibrationReaderSqlite::find(where, selector, states);
    });
    for (const auto& state : states) {
        if (!choice.database)
            choice.rejected.push_back({state, calibration::shortfallOf(state, *choice.selector)});
        else if (!choice.state && state.key == choice.database->stateKey())
            choice.state = state;
    }
    if (choice.archive) {
        std::shared_ptr<kvan::calibration::ICalibrationTransformator> firstSpectrum;
        choice.archive->getCalibrator(0, POLARITY_POSITIVE, firstSpectrum);
    }
    return choice;
}

}  // namespace kvan::io::qsf2sql::recalibration
