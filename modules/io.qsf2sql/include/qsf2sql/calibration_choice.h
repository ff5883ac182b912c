#pragma once

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibration-access/calibration_state_selector.h>
#include <calibrator-ami-reader/calibrator_ami_reader.h>
#include <qsf2sql/calibration_prefs.h>

#include <boost/filesystem/path.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kvan::cppsqlite {
class CppSQLite3DB;
}

/// Which calibration of an analysis is in force: that of a store of re-calibrations beside the native files, or the one
/// that the native file holds for each spectrum.
namespace kvan::io::qsf2sql::recalibration {

/// The stores in the order in which they are asked; the first that has something is in force.
enum class Store {
    Database,  ///< `calibration.sqlite`
    Archive    ///< `Calibrator.ami`
};

inline constexpr const char* g_databaseFile = calibration::CalibrationReaderSqlite::FileName;
inline constexpr const char* g_archiveFile = "Calibrator.ami";

/// What became of a store.
enum class Answer {
    NotWanted,  ///< the preferences leave it out
    NotThere,   ///< there is no such file
    NoneFits,   ///< the database has no state for this analysis
    NotOpened,  ///< it is there, but the other store is in force
    InForce
};

/// A state of a database of which none fits, and what it lacks.
struct RejectedState {
    calibration::CalibrationStateSummary state;
    calibration::CalibrationStateShortfall shortfall;
};

/// The choice and its reasons. Owns the reader of the store in force; one thread at a time.
struct CalibrationChoice {
    Answer databaseAnswer = Answer::NotWanted;
    Answer archiveAnswer = Answer::NotWanted;

    // One of the two at most; none where the calibrations of the native file are in force.
    std::unique_ptr<calibration::CalibrationReaderSqlite> database;
    std::unique_ptr<CalibratorAmiReader> archive;

    /// What a state of the database had to be, with the facts of the analysis that it had to fit; nothing where the
    /// database was not wanted.
    std::optional<calibration::CalibrationStateSelector> selector;

    // From `explainCalibration` only.
    std::optional<calibration::CalibrationStateSummary> state;  ///< of the database in force
    std::vector<RejectedState> rejected;                        ///< by their Ids, where none fits

    bool isNative() const { return !database && !archive; }
};

/// Asks the stores in `directory` that `prefs` wants. `cache` is that of the analysis and says how many spectra and
/// which polarities a state must serve. `foundNothingIn`, if given, hears of each store that was asked in vain, before
/// the next one is asked.
///
/// Throws `std::runtime_error` "Missing polarity information!" for a cache without acquisition keys, "Couldn't open AMI
/// file " and the path for an archive that cannot be read, what `CalibrationReaderSqlite::find` throws, and for a cache
/// without spectra what `simpleCheckedQuery` throws.
CalibrationChoice chooseCalibration(const boost::filesystem::path& directory, const CalibrationPrefs& prefs,
                                    cppsqlite::CppSQLite3DB& cache,
                                    const std::function<void(Store)>& foundNothingIn = {});

/// The same choice for somebody who wants to see why: with the states of the database that was asked, as they were at
/// the moment of the choice, which costs a query more. An archive in force is asked for a calibration as well; throws
/// also what that throws, such as for a version that nobody can read.
CalibrationChoice explainCalibration(const boost::filesystem::path& directory, const CalibrationPrefs& prefs,
                                     cppsqlite::CppSQLite3DB& cache);

}  // namespace kvan::io::qsf2sql::recalibration
