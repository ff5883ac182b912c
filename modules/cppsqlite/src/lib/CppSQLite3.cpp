#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3.h>

#include <boost/throw_exception.hpp>
#include <utility>

// The connection. What a file may hold that somebody else has written is never trusted more than its mode says: a
// private file takes no locks because nobody else has its name, a frozen one because nobody can write it; both are
// modes of a URI, so their names must be escaped, while all other names must be kept from being taken for a URI. A
// failure to open leaves the object closed.
namespace kvan::cppsqlite {

namespace {

constexpr const char* g_mainDatabase = "main";

/// SQLite may be built to take any name that starts so for a URI.
std::string plainName(const std::string& fileName) {
    return fileName.compare(0, 5, "file:") == 0 ? "./" + fileName : fileName;
}

/// The URI of the file, followed by a parameter, on any platform.
std::string uriOf(const std::string& fileName, const char* parameter) {
    std::string uri = fileName.compare(0, 1, "/") == 0 ? "file://" : "file:./";
    for (const char byte : fileName) {
        if (byte == '%' || byte == '?' || byte == '#')
            uri += byte == '%' ? "%25" : byte == '?' ? "%3f" : "%23";
        else
            uri += byte;
    }
    return uri + parameter;
}

struct OpenCall {
    std::string name;
    int flags;
};

OpenCall openCall(const std::string& fileName, CppSQLite3DB::OpenMode mode) {
    // A connection belongs to one thread at a time and needs no lock of its own.
    constexpr int common = SQLITE_OPEN_NOMUTEX;
    constexpr int create = common | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    switch (mode) {
        case CppSQLite3DB::OpenMode::Existing:
            return {plainName(fileName), common | SQLITE_OPEN_READWRITE};
        case CppSQLite3DB::OpenMode::ReadOnly:
            return {plainName(fileName), common | SQLITE_OPEN_READONLY};
        case CppSQLite3DB::OpenMode::Private:
            return {uriOf(fileName, "?nolock=1"), create | SQLITE_OPEN_URI};
        case CppSQLite3DB::OpenMode::Frozen:
            return {uriOf(fileName, "?immutable=1"), common | SQLITE_OPEN_READONLY | SQLITE_OPEN_URI};
        case CppSQLite3DB::OpenMode::Create:
            break;
    }
    return {plainName(fileName), create};
}

}  // namespace

CppSQLite3DB::~CppSQLite3DB() = default;

void CppSQLite3DB::Close::operator()(sqlite3* connection) const noexcept {
    // Statements that outlive the connection by mistake keep it until they go.
    sqlite3_close_v2(connection);
}

void CppSQLite3DB::open(const std::string& fileName, OpenMode mode) {
    close();
    const OpenCall call = openCall(fileName, mode);
    sqlite3* connection = nullptr;
    // SQLite gives a connection even when it fails, which holds the words of the failure and must be closed as well.
    const int code = sqlite3_open_v2(call.name.c_str(), &connection, call.flags, nullptr);
    std::unique_ptr<sqlite3, Close> opened(connection);
    check(code, connection);
    m_connection = std::move(opened);
    m_mode = mode;
    setBusyTimeout(m_busyTimeout);
    if (mode == OpenMode::Private)
        execDML("PRAGMA journal_mode=MEMORY");
}

void CppSQLite3DB::setBusyTimeout(int milliseconds) {
    m_busyTimeout = milliseconds;
    check(sqlite3_busy_timeout(handle(), milliseconds), m_connection.get());
}

void CppSQLite3DB::close() {
    check(sqlite3_close(m_connection.get()), "Unable to close database");
    // Closed by the call; it refuses while statements are alive, and then the connection stays.
    static_cast<void>(m_connection.release());
}

void CppSQLite3DB::distrustContent() {
    // A schema may call functions from views, triggers and defaults whenever a table is read.
    check(sqlite3_db_config(handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr), m_connection.get());
    execDML("PRAGMA cell_size_check=ON");
}

std::string CppSQLite3DB::fileName() const {
    const char* const name = sqlite3_db_filename(handle(), g_mainDatabase);
    return name == nullptr ? "" : name;
}

bool CppSQLite3DB::isReadOnly() const {
    return sqlite3_db_readonly(handle(), g_mainDatabase) == 1;
}

bool CppSQLite3DB::wasMoved() const {
    int moved = 0;
    check(sqlite3_file_control(handle(), g_mainDatabase, SQLITE_FCNTL_HAS_MOVED, &moved), m_connection.get());
    return moved != 0;
}

bool CppSQLite3DB::usesWriteAheadLog() const {
    // From the file header of the SQLite format: byte 18 the version for writing, byte 19 for reading, 2 for a
    // write-ahead log.
    constexpr sqlite3_int64 readVersionOffset = 19;
    constexpr unsigned char writeAheadVersion = 2;
    // Through SQLite's own descriptor: closing another one would drop the locks of all connections to the file.
    sqlite3_file* file = nullptr;
    check(sqlite3_file_control(handle(), g_mainDatabase, SQLITE_FCNTL_FILE_POINTER, &file), m_connection.get());
    unsigned char version = 0;
    return file->pMethods != nullptr &&
           file->pMethods->xRead(file, &version, sizeof version, readVersionOffset) == SQLITE_OK &&
           version == writeAheadVersion;
}

int CppSQLite3DB::execDML(const std::string& sql) {
    char* text = nullptr;
    const int code = sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, &text);
    if (code != SQLITE_OK)
        BOOST_THROW_EXCEPTION(CppSQLite3Exception(code, text, true));
    return sqlite3_changes(m_connection.get());
}

CppSQLite3Query CppSQLite3DB::execQuery(const std::string& sql) {
    return CppSQLite3Query(m_connection.get(), prepare(sql).release(), true);
}

int CppSQLite3DB::execScalar(const std::string& sql, int nullValue) {
    const CppSQLite3Query query = execQuery(sql);
    if (query.eof() || query.numFields() < 1)
        failOwn("Invalid scalar query");
    return query.fieldIsNull(0) ? nullValue : query.getIntField(0);
}

CppSQLite3Table CppSQLite3DB::getTable(const std::string& sql) {
    char* text = nullptr;
    char** results = nullptr;
    int rows = 0;
    int columns = 0;
    const int code = sqlite3_get_table(handle(), sql.c_str(), &results, &rows, &columns, &text);
    if (code != SQLITE_OK)
        BOOST_THROW_EXCEPTION(CppSQLite3Exception(code, text, true));
    return CppSQLite3Table(CppSQLite3Table::Results(results), rows, columns);
}

CppSQLite3Statement CppSQLite3DB::compileStatement(const std::string& sql) {
    return CppSQLite3Statement(m_connection.get(), prepare(sql));
}

std::int64_t CppSQLite3DB::lastRowId() const {
    return sqlite3_last_insert_rowid(handle());
}

sqlite3* CppSQLite3DB::handle() const {
    return required(m_connection.get(), "Database not open");
}

CppSQLite3Statement::Handle CppSQLite3DB::prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(handle(), sql.c_str(), -1, &statement, nullptr), m_connection.get());
    return CppSQLite3Statement::Handle(statement);
}

}  // namespace kvan::cppsqlite
