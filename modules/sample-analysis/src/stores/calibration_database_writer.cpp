#include <cppsqlite/CppSQLite3.h>
#include <sample-analysis/calibration_database_writer.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <utility>

// The database is written under another name, in one transaction and without locks or a journal on disk, and renamed at
// the end: nobody ever sees half of it, and an old one stays until its successor is whole. Statements that run once a
// spectrum are prepared once. Ids count from 1 in the order of the calls; 0 stands for no reference and becomes NULL.

namespace kvan::sample::stores {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;
using cppsqlite::CppSQLite3Statement;

constexpr std::size_t g_numbers = 9;

// Columns of numbers have no type, so that a value keeps the one that it is bound with.
constexpr const char* g_schema =
    "CREATE TABLE GlobalMetadata (Key TEXT PRIMARY KEY, Value TEXT);"
    "CREATE TABLE CalibrationState (Id INTEGER PRIMARY KEY, Key TEXT UNIQUE, Source TEXT, HasFrameCalibrators INTEGER, "
    "PositiveReferenceCalibratorId INTEGER, NegativeReferenceCalibratorId INTEGER);"
    "CREATE TABLE DigitizerConstants (CalibrationState INTEGER PRIMARY KEY, DigitizerTimebase REAL, DigitizerDelay "
    "REAL);"
    "CREATE TABLE FrameMzCalibrationMapping (CalibrationState INTEGER, FrameId INTEGER, FrameMzCalibrationId INTEGER, "
    "PRIMARY KEY (CalibrationState, FrameId)) WITHOUT ROWID;"
    "CREATE TABLE TimsCalibrationMapping (CalibrationState INTEGER, FrameId INTEGER, TimsCalibrationId INTEGER, "
    "PRIMARY KEY (CalibrationState, FrameId)) WITHOUT ROWID;"
    "CREATE TABLE RefMzCalibration (Id INTEGER PRIMARY KEY, ModelType INTEGER, T1 REAL, T2 REAL, dC1 REAL, dC2 REAL, "
    "C0, C1, C2, C3, C4, C5, C6, C7, C8, Coefficients BLOB);"
    "CREATE TABLE FrameMzCalibration (Id INTEGER PRIMARY KEY, ModelType INTEGER, CalibrationState INTEGER, "
    "C0, C1, C2, C3, C4, C5, C6, C7, C8, Coefficients BLOB);"
    "CREATE TABLE TimsCalibration (Id INTEGER PRIMARY KEY, ModelType INTEGER, CalibrationState INTEGER, C0);";

/// Binds the numbers and the coefficients from `parameter` on.
void bindNumbers(CppSQLite3Statement& statement, int parameter, const MzCalibration& calibration) {
    if (calibration.numbers.size() > g_numbers)
        BOOST_THROW_EXCEPTION(std::invalid_argument("A calibration has nine numbers at most."));
    // A model with fewer numbers than columns has NULL in the others.
    for (std::size_t number = 0; number < g_numbers; ++number, ++parameter) {
        if (number < calibration.numbers.size() && calibration.numbers[number])
            statement.bind(parameter, *calibration.numbers[number]);
        else
            statement.bindNull(parameter);
    }
    if (calibration.coefficients)
        statement.bind(parameter, static_cast<const void*>(calibration.coefficients->data()),
                       calibration.coefficients->size());
    else
        statement.bindNull(parameter);
}

void bindId(CppSQLite3Statement& statement, int parameter, std::int64_t id) {
    if (id != 0)
        statement.bind(parameter, id);
    else
        statement.bindNull(parameter);
}

}  // namespace

CalibrationDatabaseWriter::CalibrationDatabaseWriter(const fs::path& directory, SchemaVersion version)
    : m_file(directory / g_calibrationDatabaseName),
      m_unfinishedFile(directory / (std::string(g_calibrationDatabaseName) + "-unfinished")),
      m_database(std::make_unique<CppSQLite3DB>()) {
    // What an interrupted run left.
    fs::remove(m_unfinishedFile);
    m_database->open(sys::pathToUtf8(m_unfinishedFile), CppSQLite3DB::OpenMode::Private);
    m_database->execDML("BEGIN");
    m_database->execDML(g_schema);
    auto insert = m_database->compileStatement("INSERT INTO GlobalMetadata VALUES (?, ?)");
    for (const auto& [key, value] : {std::pair<const char*, std::string>{"SchemaType", "CALIBRATION_SQLITE"},
                                     {"SchemaVersionMajor", std::to_string(version.major)},
                                     {"SchemaVersionMinor", std::to_string(version.minor)}}) {
        insert.bind(1, key);
        insert.bind(2, value);
        insert.execDML();
    }
    m_insertFrame = std::make_unique<CppSQLite3Statement>(
        m_database->compileStatement("INSERT INTO FrameMzCalibration VALUES (?,?,?, ?,?,?,?,?,?,?,?,?, ?)"));
    m_insertMapping = std::make_unique<CppSQLite3Statement>(
        m_database->compileStatement("INSERT INTO FrameMzCalibrationMapping VALUES (?, ?, ?)"));
}

CalibrationDatabaseWriter::~CalibrationDatabaseWriter() {
    // Statements go before their connection, the connection before its file.
    m_insertFrame.reset();
    m_insertMapping.reset();
    m_database.reset();
    boost::system::error_code none;
    fs::remove(m_unfinishedFile, none);
}

void CalibrationDatabaseWriter::addState(const CalibrationState& state) {
    ++m_state;
    auto insert = m_database->compileStatement("INSERT INTO CalibrationState VALUES (?, ?, ?, ?, ?, ?)");
    insert.bind(1, m_state);
    insert.bind(2, state.key);
    insert.bind(3, state.source);
    insert.bind(4, state.hasFrameCalibrators);
    bindId(insert, 5, state.positive ? addReference(*state.positive) : 0);
    bindId(insert, 6, state.negative ? addReference(*state.negative) : 0);
    insert.execDML();
    if (!state.digitizer)
        return;
    auto insertDigitizer = m_database->compileStatement("INSERT INTO DigitizerConstants VALUES (?, ?, ?)");
    insertDigitizer.bind(1, m_state);
    insertDigitizer.bind(2, state.digitizer->timebase);
    insertDigitizer.bind(3, state.digitizer->delay);
    insertDigitizer.execDML();
}

std::int64_t CalibrationDatabaseWriter::addReference(const MzReference& reference) {
    auto insert =
        m_database->compileStatement("INSERT INTO RefMzCalibration VALUES (?,?, ?,?,?,?, ?,?,?,?,?,?,?,?,?, ?)");
    insert.bind(1, ++m_references);
    insert.bind(2, reference.calibration.model);
    insert.bind(3, reference.T1);
    insert.bind(4, reference.T2);
    insert.bind(5, reference.dC1);
    insert.bind(6, reference.dC2);
    bindNumbers(insert, 7, reference.calibration);
    insert.execDML();
    return m_references;
}

void CalibrationDatabaseWriter::addFrame(std::int64_t frame, const MzCalibration& calibration) {
    m_insertFrame->bind(1, ++m_frames);
    m_insertFrame->bind(2, calibration.model);
    m_insertFrame->bind(3, m_state);
    bindNumbers(*m_insertFrame, 4, calibration);
    m_insertFrame->execDML();
    // Frame calibrators are not shared: the mapping is one to one.
    m_insertMapping->bind(1, m_state);
    m_insertMapping->bind(2, frame);
    m_insertMapping->bind(3, m_frames);
    m_insertMapping->execDML();
}

void CalibrationDatabaseWriter::finish() {
    // A connection with a living statement would refuse to close.
    m_insertFrame.reset();
    m_insertMapping.reset();
    m_database->execDML("COMMIT");
    m_database->close();
    fs::rename(m_unfinishedFile, m_file);
}

}  // namespace kvan::sample::stores
