#include "calibration-reader/calibration_reader_sqlite_impl.h"

#include "calibration-reader/failure.h"

#include <calibration-core/temperaturecompensation/TemperatureCompensationInfo.h>
#include <cppsqlite/simple_checked_query.h>
#include <cppsqlite/sql_text.h>

#include <boost/filesystem/path.hpp>

// The members are made in the order of the checks: version, state, tables, digitizer constants; the first that fails
// ends the construction. References are read once a polarity and shared; a failed load is tried again at the next call.
// A state without digitizer constants is no fault until a model needs them. A file that is read as frozen has no lock
// that keeps writers out, so its stamp is compared around each read and a change ends all reads of it.
namespace kvan::io::calibration {

namespace {

namespace compensation = ::kvan::calibration::TemperatureCompensation;
using cppsqlite::CppSQLite3DB;
using cppsqlite::simpleCheckedQuery;

void checkSchemaVersion(CppSQLite3DB& database) {
    const auto major =
        simpleCheckedQuery<std::int64_t>(database, "SELECT Value FROM GlobalMetadata WHERE Key='SchemaVersionMajor'");
    const auto minor =
        simpleCheckedQuery<std::int64_t>(database, "SELECT Value FROM GlobalMetadata WHERE Key='SchemaVersionMinor'");
    // A new minor version stays readable, a new major one does not.
    if (major >= 2)
        fail("calibration schema version " + std::to_string(major) + "." + std::to_string(minor) + " not supported.");
}

/// The Id of the state, in a database of a known version.
std::int64_t resolveState(CppSQLite3DB& database, const std::string& key) {
    checkSchemaVersion(database);
    const auto id = cppsqlite::simpleOptionalQuery<std::int64_t>(
        database, "SELECT Id From CalibrationState WHERE Key=" + cppsqlite::sqlText(key));
    if (!id)
        fail("Requested calibration state " + key + " does not exist");
    return *id;
}

bool readHasFrameCalibrators(CppSQLite3DB& database, std::int64_t state) {
    return simpleCheckedQuery<std::int64_t>(
               database, "SELECT HasFrameCalibrators FROM CalibrationState WHERE Id=" + std::to_string(state)) != 0;
}

std::optional<DigitizerConstants> readDigitizerConstants(CppSQLite3DB& database, std::int64_t state,
                                                         const logging::Logger& logger) {
    const tables::TypedRow row(
        database.execQuery("SELECT DigitizerTimebase, DigitizerDelay FROM DigitizerConstants WHERE CalibrationState=" +
                           std::to_string(state)),
        "DigitizerConstants", "CalibrationState", state);
    if (row.exists())
        return DigitizerConstants{.timebase = row.real(0), .delay = row.real(1)};
    KVAN_LOG(logger, DEBUG) << "No digitizer constants in calibration state " << state;
    return {};
}

/// The temperatures of a reference that is used as it is are not looked at.
details::MzCalibTemperatureInfo readTemperatures(const tables::TypedRow& reference) {
    // Tolerated: with both coefficients 0.0 whatever stands in T1 and T2 is not looked at.
    constexpr int T1 = tables::CalibrationTableReader::FirstExtra;
    details::MzCalibTemperatureInfo info{.dC1 = reference.real(T1 + 2), .dC2 = reference.real(T1 + 3)};
    if (info.isCompensated()) {
        info.T1 = reference.real(T1);
        info.T2 = reference.real(T1 + 1);
    }
    return info;
}

std::optional<sys::FileStamp> stampIfFrozen(const CppSQLite3DB& database) {
    if (database.mode() != CppSQLite3DB::OpenMode::Frozen)
        return {};
    return sys::stampOf(sys::pathFromUtf8(database.fileName()));
}

}  // namespace

CalibrationReaderSqliteImpl::CalibrationReaderSqliteImpl(std::unique_ptr<CppSQLite3DB> database, const std::string& key)
    : m_logger(logging::Logger::getLogger("io.calibration.CalibrationReaderSqliteImpl")),
      m_database(std::move(database)),
      m_frozen(stampIfFrozen(*m_database)),
      m_key(key),
      m_state(resolveState(*m_database, key)),
      m_references(*m_database, "RefMzCalibration", {"T1", "T2", "dC1", "dC2"}),
      m_frames(*m_database, m_state),
      m_hasFrameCalibrators(readHasFrameCalibrators(*m_database, m_state)),
      m_digitizer(readDigitizerConstants(*m_database, m_state, m_logger)),
      m_unlockedFrames(m_state) {}

template <class Read>
auto CalibrationReaderSqliteImpl::readWhole(Read read) {
    const auto requireUnchanged = [this] {
        if (m_frozen && sys::stampOf(sys::pathFromUtf8(m_database->fileName())) != m_frozen)
            fail(m_database->fileName() + " has changed since it was opened");
    };
    requireUnchanged();
    // A change in between can have spoiled what was read, so the result waits for the second look.
    auto result = read();
    requireUnchanged();
    return result;
}

CalibrationReaderSqliteImpl::TransformatorPtr CalibrationReaderSqliteImpl::getMzTrafo(std::int64_t frameId) {
    if (!m_hasFrameCalibrators)
        fail("No frame m/z trafos available");
    return loadFrameMzTrafo(frameId);
}

CalibrationReaderSqliteImpl::TransformatorPtr CalibrationReaderSqliteImpl::loadFrameMzTrafo(std::int64_t frameId) {
    if (auto transformator = m_unlockedFrames.tryLoad(frameId, m_digitizer))
        return transformator;
    auto transformator = readWhole([&] { return m_frames.load(frameId, m_digitizer); });
    m_unlockedFrames.noteLockedRead(*m_database);
    return transformator;
}

CalibrationReaderSqliteImpl::TransformatorPtr CalibrationReaderSqliteImpl::getRefMzTrafo(bool negative, double T1,
                                                                                         double T2) {
    Reference& reference = negative ? m_negative : m_positive;
    boost::call_once(reference.loaded, [&] { reference.trafo = readWhole([&] { return loadRefMzTrafo(negative); }); });
    const auto& [transformator, temperatures] = reference.trafo;
    if (!transformator)
        fail(std::string("no reference calibration available for ") + (negative ? "negative" : "positive") +
             " polarity");
    if (!temperatures.isCompensated())
        return transformator;
    compensation::CalibrationTemperatureCompensator compensator;
    compensator.SetReferenceTransformator(transformator);
    compensator.SetReferenceTemperatures({temperatures.T1, temperatures.T2});
    compensator.SetCorrectionFactors({temperatures.dC1, temperatures.dC2});
    return compensator.Compensate(
        compensation::addTemperatureCompensationInfo(transformator, {T1, T2}, {temperatures.dC1, temperatures.dC2}));
}

CalibrationReaderSqliteImpl::RefMzTrafo CalibrationReaderSqliteImpl::loadRefMzTrafo(bool negative) {
    const tables::TypedRow state(
        m_database->execQuery(std::string("SELECT ") +
                              (negative ? "NegativeReferenceCalibratorId" : "PositiveReferenceCalibratorId") +
                              " FROM CalibrationState WHERE Id=" + std::to_string(m_state)),
        "CalibrationState", "Id", m_state);
    // None for this polarity; whether that is a fault is for the caller of the reference to say.
    if (!state.exists() || state.isNull(0))
        return {};
    const tables::TypedRow row = m_references.find(state.integer(0));
    if (!row.exists())
        return {};
    const MzModel model = mzModelOf(row.integer(tables::CalibrationTableReader::ModelType));
    if (model == MzModel::Ftms04)
        fail("FTMS04 as reference trafo is not supported.");
    if (model == MzModel::Ftms1356)
        fail("FTMS1356 as reference trafo is not supported.");
    const auto temperatures = readTemperatures(row);
    auto transformator = makeMzTrafo(model, row, m_references.firstModelColumn(), m_digitizer);
    if (!temperatures.isCompensated()) {
        KVAN_LOG(m_logger, DEBUG) << "Not performing temperature compensation, as coefficients are 0.0";
    }
    return {std::move(transformator), temperatures};
}

}  // namespace kvan::io::calibration
