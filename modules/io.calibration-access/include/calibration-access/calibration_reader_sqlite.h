#pragma once

#include <calibration-access/calibration_state_selector.h>
#include <calibration-access/calibration_states.h>
#include <sysutils/boost_fwd.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kvan::calibration {
class ICalibrationTransformator;
}

namespace kvan::io::calibration {

class CalibrationReaderSqliteImpl;

/// One state of the calibration database `calibration.sqlite` in an analysis directory. Owns its connection; keeps no
/// read transaction between calls. One thread at a time.
///
/// The database is only read: SQLite writes beside it no more than the locks of its write-ahead log, if it is in that
/// mode, and settles what an interrupted writer left. A database that another process holds locked is waited for 15
/// seconds. Where locks cannot be had, a change to the file ends all reads of it.
class CalibrationReaderSqlite {
public:
    using TransformatorPtr = std::shared_ptr<::kvan::calibration::ICalibrationTransformator>;

    /// Of the database in an analysis directory.
    static constexpr const char* FileName = "calibration.sqlite";

    /// The state that `selector` wants; null when there is no database or no state in it that fits. An empty directory
    /// means the current one. Throws `std::runtime_error` for a directory that is none, a file that is no calibration
    /// database of a known version, a state that was asked for by its key and is not there, and tables without the
    /// columns of a model; `CppSQLite3Exception` when SQLite refuses.
    static std::unique_ptr<CalibrationReaderSqlite> find(const boost::filesystem::path& analysisDirectory,
                                                         const CalibrationStateSelector& selector);

    /// The same; `states` becomes all states by their Ids at the moment of the choice, and is empty without a database.
    static std::unique_ptr<CalibrationReaderSqlite> find(const boost::filesystem::path& analysisDirectory,
                                                         const CalibrationStateSelector& selector,
                                                         std::vector<CalibrationStateSummary>& states);

    /// As `find`, but throws `std::runtime_error` where that gives null.
    CalibrationReaderSqlite(const boost::filesystem::path& analysisDirectory, const CalibrationStateSelector& selector);
    /// Of a state that was found already; never null.
    explicit CalibrationReaderSqlite(std::unique_ptr<CalibrationReaderSqliteImpl> impl);
    ~CalibrationReaderSqlite();

    /// The key of the state.
    const std::string& stateKey() const;

    /// Whether the state has a calibration for each spectrum, for `getMzTrafo`; otherwise it has reference calibrations
    /// for `getRefMzTrafo`.
    bool hasFrameCalibrators() const;

    /// The calibration of the spectrum with that number; a new object. Throws `std::runtime_error` when the state has
    /// no frame calibrators or none for this spectrum, or a row lacks what its model needs; `std::invalid_argument` for
    /// an unknown model or constants that the factory refuses; `CppSQLite3Exception` when SQLite refuses.
    TransformatorPtr getMzTrafo(std::int64_t frameId);

    /// The reference calibration of the polarity, adapted to a spectrum measured at the temperatures `T1` and `T2` if
    /// the reference has coefficients other than 0.0. It may be shared and is not to be changed. The reference is
    /// loaded at the first call for its polarity; a failure is tried again at the next. Throws `std::runtime_error`
    /// when the state has no reference for the polarity, and as `getMzTrafo`.
    TransformatorPtr getRefMzTrafo(bool negative, double T1, double T2);

private:
    std::unique_ptr<CalibrationReaderSqliteImpl> m_impl;
};

}  // namespace kvan::io::calibration
