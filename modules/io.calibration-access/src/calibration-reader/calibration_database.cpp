#include "calibration-reader/calibration_database.h"

#include "cppsqlite/plain_tables.h"
#include "cppsqlite/simple_checked_query.h"
#include "sysutils/platform.h"

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>

namespace kvan::io::calibration {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;

constexpr int g_busyTimeout = 15000;  // milliseconds

[[noreturn]] void fail(const std::string& text) {
    BOOST_THROW_EXCEPTION(std::runtime_error(text));
}

/// Whether all that was written to the database is in the file itself, and whole.
bool isWholeByItself(const fs::path& file) {
    const fs::path log = file.parent_path() / (file.filename().native() + fs::path("-wal").native());
    const fs::path journal = file.parent_path() / (file.filename().native() + fs::path("-journal").native());
    return (!fs::exists(log) || fs::file_size(log) == 0) && !fs::exists(journal);
}

/// Where nothing may be written, SQLite refuses a database in write-ahead mode, although nobody else writes it either.
std::unique_ptr<CppSQLite3DB> connectForReading(const fs::path& file) {
    try {
        return connectToCalibrationDatabase(file, CppSQLite3DB::OpenMode::Existing);
    } catch (const cppsqlite::CppSQLite3Exception& fault) {
        if (fault.errorCode() != SQLITE_READONLY || !isWholeByItself(file))
            throw;
    }
    return connectToCalibrationDatabase(file, CppSQLite3DB::OpenMode::Frozen);
}

}  // namespace

std::unique_ptr<CppSQLite3DB> connectToCalibrationDatabase(const fs::path& file, CppSQLite3DB::OpenMode mode) {
    auto database = std::make_unique<CppSQLite3DB>();
    database->open(sys::pathToUtf8(file), mode);
    database->setBusyTimeout(g_busyTimeout);
    database->distrustContent();
    if (const auto name = cppsqlite::findComputedTable(
            *database, {"GlobalMetadata", "CalibrationState", "DigitizerConstants", "FrameMzCalibrationMapping",
                        "TimsCalibrationMapping", "RefMzCalibration", "FrameMzCalibration", "TimsCalibration"}))
        fail("Calibration database: " + *name + " is not a plain table");
    return database;
}

fs::path calibrationFile(const fs::path& analysisDirectory) {
    const fs::path directory = analysisDirectory.empty() ? "." : analysisDirectory;
    if (!fs::exists(directory))
        fail("Specified analysis directory does not exist");
    if (!fs::is_directory(directory))
        fail("Specified path is not a directory");
    return directory / "calibration.sqlite";
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
    if (type != "CALIBRATION_SQLITE")
        fail("Schema type '" + type + "' not supported");
    return database;
}

}  // namespace kvan::io::calibration
