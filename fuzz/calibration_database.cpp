// Rows of a calibration database with values of any type end in a calibration or in an exception that tells; the
// conversions of a calibration end in numbers or in its law's failure.

#include "calibration-reader/calibration_reader_sqlite_impl.h"
#include "calibration_laws.h"

#include <algorithm>
#include <cstring>

namespace {

using kvan::cppsqlite::CppSQLite3DB;
using kvan::cppsqlite::CppSQLite3Statement;

/// Values of every type out of the input; NULL beyond its end.
class Values {
public:
    Values(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    void bindNext(CppSQLite3Statement& statement, int parameter) {
        switch (byte() % 8) {
            case 0:
                return statement.bindNull(parameter);
            case 1:
                return statement.bind(parameter, number<std::int64_t>());
            case 2: {
                const std::size_t length = std::min<std::size_t>(byte(), m_size);
                const std::string_view text(reinterpret_cast<const char*>(take(length)), length);
                return statement.bind(parameter, text);
            }
            case 3: {
                const std::size_t length = std::min<std::size_t>(byte(), m_size);
                return statement.bind(parameter, static_cast<const void*>(take(length)), length);
            }
            case 4:
            case 5:
                return statement.bind(parameter, static_cast<std::int8_t>(byte()));
            default:
                return statement.bind(parameter, number<double>());
        }
    }

private:
    std::uint8_t byte() { return number<std::uint8_t>(); }

    template <class T>
    T number() {
        T value{};
        const std::size_t length = std::min(sizeof value, m_size);
        if (length > 0)
            std::memcpy(&value, take(length), length);
        return value;
    }

    const std::uint8_t* take(std::size_t length) {
        const std::uint8_t* const first = m_data;
        m_data += length;
        m_size -= length;
        return first;
    }

    const std::uint8_t* m_data;
    std::size_t m_size;
};

constexpr const char* g_schema =
    "CREATE TABLE GlobalMetadata (Key, Value);"
    "INSERT INTO GlobalMetadata VALUES ('SchemaVersionMajor', 1), ('SchemaVersionMinor', 0);"
    "CREATE TABLE CalibrationState (Id, Key, HasFrameCalibrators, PositiveReferenceCalibratorId,"
    "NegativeReferenceCalibratorId); CREATE TABLE DigitizerConstants (CalibrationState, DigitizerTimebase,"
    "DigitizerDelay); CREATE TABLE FrameMzCalibrationMapping (CalibrationState, FrameId INTEGER, FrameMzCalibrationId);"
    "CREATE TABLE RefMzCalibration (Id, ModelType, T1, T2, dC1, dC2, a, b, c, d, e, f, g, h, i, j);"
    "CREATE TABLE FrameMzCalibration (Id, ModelType, CalibrationState, a, b, c, d, e, f, g, h, i, j)";

void insert(CppSQLite3DB& database, const std::string& row, Values& values) {
    auto statement = database.compileStatement("INSERT INTO " + row);
    for (int parameter = 1; parameter <= std::count(row.begin(), row.end(), '?'); ++parameter)
        values.bindNext(statement, parameter);
    statement.execDML();
}

std::unique_ptr<CppSQLite3DB> databaseOf(Values values) {
    auto database = std::make_unique<CppSQLite3DB>();
    database->open(":memory:");
    database->execDML(g_schema);
    insert(*database, "CalibrationState VALUES (1, 'k', ?, 1, ?)", values);
    insert(*database, "FrameMzCalibration VALUES (1, ?, 1, ?,?,?,?,?,?,?,?,?,?)", values);
    insert(*database, "RefMzCalibration VALUES (1, ?, ?,?,?,?, ?,?,?,?,?,?,?,?,?,?)", values);
    insert(*database, "DigitizerConstants VALUES (1, ?, ?)", values);
    database->execDML("INSERT INTO FrameMzCalibrationMapping VALUES ('1', 1, 1)");
    insert(*database, "FrameMzCalibrationMapping VALUES ('1', 2, ?)", values);
    return database;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto database = databaseOf({data, size});
    std::unique_ptr<kvan::io::calibration::CalibrationReaderSqliteImpl> reader;
    fuzz::succeeds([&] {
        reader = std::make_unique<kvan::io::calibration::CalibrationReaderSqliteImpl>(std::move(database), "k");
    });
    if (!reader)
        return 0;
    for (const int frame : {1, 2})
        fuzz::succeeds([&] { fuzz::convert(*reader->getMzTrafo(frame)); });
    for (const bool negative : {false, true})
        fuzz::succeeds([&] { fuzz::convert(*reader->getRefMzTrafo(negative, 25.0, 30.0)); });
    return 0;
}
