#include "calibration-reader/calibration_database.h"

#include "calibration-reader/failure.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <cppsqlite/plain_tables.h>
#include <cppsqlite/simple_checked_query.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>

// The file comes from somewhere, may be written by somebody at this moment, and may lie where nothing can be written.
// So: nothing of its schema is run before it is known to be plain tables; locks are waited for; and a database whose
// log needs files beside it, which cannot be made there, is read as frozen if all of its data is in the file itself.
// Where a log or a journal holds data, the ordinary way must do, and its failure counts.
namespace kvan::io::calibration {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;

constexpr int g_busyTimeout = 15000;  // milliseconds

/// Reads nothing yet.
std::unique_ptr<CppSQLite3DB> connect(const fs::path& file, CppSQLite3DB::OpenMode mode) {
    auto database = std::make_unique<CppSQLite3DB>();
    database->open(sys::pathToUtf8(file), mode);
    database->setBusyTimeout(g_busyTimeout);
    database->distrustContent();
    return database;
}

void requirePlainTables(CppSQLite3DB& database) {
    if (const auto name = cppsqlite::findComputedTable(
            database, {"GlobalMetadata", "CalibrationState", "DigitizerConstants", "FrameMzCalibrationMapping",
                       "TimsCalibrationMapping", "RefMzCalibration", "FrameMzCalibration", "TimsCalibration"}))
        fail("Calibration database: " + *name + " is not a plain table");
}

fs::path beside(const CppSQLite3DB& database, const char* ending) {
    return sys::pathFromUtf8(database.fileName() + ending);
}

/// Whether all that was written to the database is in the file itself, and whole.
bool isWholeByItself(const CppSQLite3DB& database) {
    const fs::path log = beside(database, "-wal");
    return (!fs::exists(log) || fs::file_size(log) == 0) && !fs::exists(beside(database, "-journal"));
}

/// Whether SQLite would make its files beside a database that it may not write, and leave them there.
bool wouldLeaveFiles(const CppSQLite3DB& database) {
    return database.isReadOnly() && database.usesWriteAheadLog() && !fs::exists(beside(database, "-shm"));
}

/// Where nothing may be written, SQLite refuses a database in write-ahead mode, although nobody else writes it either.
bool isRefusedForItsLog(const cppsqlite::CppSQLite3Exception& fault) {
    return fault.errorCode() == SQLITE_READONLY || fault.errorCode() == SQLITE_CANTOPEN;
}

std::unique_ptr<CppSQLite3DB> connectForReading(const fs::path& file) {
    auto database = connect(file, CppSQLite3DB::OpenMode::Existing);
    // Asked before the first statement, which would make the files already.
    if (!wouldLeaveFiles(*database) || !isWholeByItself(*database)) {
        try {
            requirePlainTables(*database);
            return database;
        } catch (const cppsqlite::CppSQLite3Exception& fault) {
            if (!isRefusedForItsLog(fault) || !isWholeByItself(*database))
                throw;
        }
    }
    return connectToCalibrationDatabase(file, CppSQLite3DB::OpenMode::Frozen);
}

}  // namespace

std::unique_ptr<CppSQLite3DB> connectToCalibrationDatabase(const fs::path& file, CppSQLite3DB::OpenMode mode) {
    auto database = connect(file, mode);
    requirePlainTables(*database);
    return database;
}

fs::path calibrationFile(const fs::path& analysisDirectory) {
    // The empty path is the current directory to callers, but not to the file system.
    const fs::path directory = analysisDirectory.empty() ? "." : analysisDirectory;
    if (!fs::exists(directory))
        fail("Specified analysis directory does not exist");
    if (!fs::is_directory(directory))
        fail("Specified path is not a directory");
    return directory / CalibrationReaderSqlite::FileName;
}

bool isThere(const fs::path& file) {
    return fs::exists(file);
}

std::unique_ptr<CppSQLite3DB> openCalibrationDatabase(const fs::path& file) {
    if (!isThere(file))
        fail(sys::pathToUtf8(file) + " doesn't exist");
    if (!fs::is_regular_file(file))
        fail(sys::pathToUtf8(file) + " is not a regular file");
    auto database = connectForReading(file);
    const auto type = cppsqlite::simpleCheckedQuery<std::string>(
        *database, "SELECT Value FROM GlobalMetadata WHERE Key='SchemaType'");
    // Any SQLite file may have the name.
    if (type != "CALIBRATION_SQLITE")
        fail("Schema type '" + type + "' not supported");
    return database;
}

}  // namespace kvan::io::calibration
