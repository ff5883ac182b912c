#pragma once

#include <calibration-access/calibration_states.h>
#include <cppsqlite/CppSQLite3.h>
#include <sysutils/boost_fwd.h>

#include <memory>
#include <vector>

namespace kvan::io::calibration {

/// Where the calibration database of an analysis lies, if there is one. An empty directory means the current one.
/// Throws `std::runtime_error` for a directory that does not exist or is none.
boost::filesystem::path calibrationFile(const boost::filesystem::path& analysisDirectory);

/// Whether anything stands there. A link that leads nowhere is nothing.
bool isThere(const boost::filesystem::path& file);

/// Opens the file for reading; never makes it. Throws `std::runtime_error` when it is not there, is no regular file,
/// has something else than plain tables in the names of its tables or another schema type than "CALIBRATION_SQLITE";
/// `CppSQLite3Exception` when SQLite refuses.
std::unique_ptr<cppsqlite::CppSQLite3DB> openCalibrationDatabase(const boost::filesystem::path& file);

/// A connection to the file in that mode, of which no schema is read but to see that it is harmless. Throws as
/// `openCalibrationDatabase`.
std::unique_ptr<cppsqlite::CppSQLite3DB> connectToCalibrationDatabase(const boost::filesystem::path& file,
                                                                      cppsqlite::CppSQLite3DB::OpenMode mode);

/// All states by their Ids.
std::vector<CalibrationStateSummary> readCalibrationStates(cppsqlite::CppSQLite3DB& database);

}  // namespace kvan::io::calibration
