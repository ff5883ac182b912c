#include "calibration-reader/calibration_database.h"
#include "calibration-reader/calibration_reader_sqlite_impl.h"

#include <calibration-access/calibration_reader_sqlite.h>

#include <boost/filesystem/path.hpp>

// The public face: finds the file, opens it, lets the selector choose a state, and hands over to the reader of that
// state. No file and no state that fits are no failures here; everything else is. The reader takes the database over
// and keeps it open: calibrations are read when they are asked for, not all at once.
namespace kvan::io::calibration {

std::unique_ptr<CalibrationReaderSqlite> CalibrationReaderSqlite::find(const boost::filesystem::path& analysisDirectory,
                                                                       const CalibrationStateSelector& selector) {
    const auto file = calibrationFile(analysisDirectory);
    if (!isThere(file))
        return nullptr;
    auto database = openCalibrationDatabase(file);
    const auto key = selector.findUUID(*database);
    if (!key)
        return nullptr;
    return std::make_unique<CalibrationReaderSqlite>(
        std::make_unique<CalibrationReaderSqliteImpl>(std::move(database), *key));
}

// One transaction over the choice and the list, so that no writer comes between them. Where something fails it ends
// with its connection.
std::unique_ptr<CalibrationReaderSqlite> CalibrationReaderSqlite::find(const boost::filesystem::path& analysisDirectory,
                                                                       const CalibrationStateSelector& selector,
                                                                       std::vector<CalibrationStateSummary>& states) {
    states.clear();
    const auto file = calibrationFile(analysisDirectory);
    if (!isThere(file))
        return nullptr;
    auto database = openCalibrationDatabase(file);
    cppsqlite::CppSQLite3DB& connection = *database;
    connection.execDML("BEGIN");
    std::unique_ptr<CalibrationReaderSqlite> reader;
    if (const auto key = selector.findUUID(connection))
        reader = std::make_unique<CalibrationReaderSqlite>(
            std::make_unique<CalibrationReaderSqliteImpl>(std::move(database), *key));
    states = readCalibrationStates(connection);
    connection.execDML("COMMIT");
    return reader;
}

CalibrationReaderSqlite::CalibrationReaderSqlite(const boost::filesystem::path& analysisDirectory,
                                                 const CalibrationStateSelector& selector) {
    auto database = openCalibrationDatabase(calibrationFile(analysisDirectory));
    // Throws where `find` gives null.
    const std::string key = selector.getUUID(*database);
    m_impl = std::make_unique<CalibrationReaderSqliteImpl>(std::move(database), key);
}

CalibrationReaderSqlite::CalibrationReaderSqlite(std::unique_ptr<CalibrationReaderSqliteImpl> impl)
    : m_impl(std::move(impl)) {}

CalibrationReaderSqlite::~CalibrationReaderSqlite() = default;

const std::string& CalibrationReaderSqlite::stateKey() const {
    return m_impl->stateKey();
}

bool CalibrationReaderSqlite::hasFrameCalibrators() const {
    return m_impl->hasFrameCalibrators();
}

CalibrationReaderSqlite::TransformatorPtr CalibrationReaderSqlite::getMzTrafo(std::int64_t frameId) {
    return m_impl->getMzTrafo(frameId);
}

CalibrationReaderSqlite::TransformatorPtr CalibrationReaderSqlite::getRefMzTrafo(bool negative, double T1, double T2) {
    return m_impl->getRefMzTrafo(negative, T1, T2);
}

}  // namespace kvan::io::calibration
