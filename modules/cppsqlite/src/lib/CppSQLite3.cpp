#include <cppsqlite/CppSQLite3.h>

#include <boost/throw_exception.hpp>
#include <iterator>
#include <memory>
#include <utility>

namespace kvan::cppsqlite {

namespace {

// By code, from 0 on.
constexpr const char* g_primaryNames[] = {
    "SQLITE_OK",       "SQLITE_ERROR",      "SQLITE_INTERNAL", "SQLITE_PERM",      "SQLITE_ABORT", "SQLITE_BUSY",
    "SQLITE_LOCKED",   "SQLITE_NOMEM",      "SQLITE_READONLY", "SQLITE_INTERRUPT", "SQLITE_IOERR", "SQLITE_CORRUPT",
    "SQLITE_NOTFOUND", "SQLITE_FULL",       "SQLITE_CANTOPEN", "SQLITE_PROTOCOL",  "SQLITE_EMPTY", "SQLITE_SCHEMA",
    "SQLITE_TOOBIG",   "SQLITE_CONSTRAINT", "SQLITE_MISMATCH", "SQLITE_MISUSE",    "SQLITE_NOLFS", "SQLITE_AUTH",
    "SQLITE_FORMAT",   "SQLITE_RANGE"};
static_assert(std::size(g_primaryNames) == SQLITE_RANGE + 1);

const char* codeName(int code) {
    if (code >= SQLITE_OK && code <= SQLITE_RANGE)
        return g_primaryNames[code];
    switch (code) {
        case SQLITE_ROW:
            return "SQLITE_ROW";
        case SQLITE_DONE:
            return "SQLITE_DONE";
        case CppSQLite3Exception::wrapperError:
            return "CPPSQLITE_ERROR";
        default:
            return "UNKNOWN_ERROR";
    }
}

std::string formatMessage(int code, const char* text, bool freeText) {
    const std::unique_ptr<char, decltype(&sqlite3_free)> allocated(freeText ? const_cast<char*>(text) : nullptr,
                                                                   &sqlite3_free);
    return std::string(codeName(code)) + "[" + std::to_string(code) + "]: " + (text == nullptr ? "" : text);
}

[[noreturn]] void fail(int code, const char* text) {
    BOOST_THROW_EXCEPTION(CppSQLite3Exception(code, text));
}

[[noreturn]] void failOwn(const char* text) {
    fail(CppSQLite3Exception::wrapperError, text);
}

void check(int code, const char* text) {
    if (code != SQLITE_OK)
        fail(code, text);
}

void check(int code, sqlite3* connection) {
    if (code != SQLITE_OK)
        fail(code, sqlite3_errmsg(connection));
}

template <class Handle>
Handle* required(Handle* handle, const char* text) {
    if (handle == nullptr)
        failOwn(text);
    return handle;
}

constexpr const char* g_mainDatabase = "main";
constexpr const char* g_noStatement = "Null Virtual Machine pointer";
constexpr const char* g_noField = "Invalid field index requested";

void bindText(sqlite3_stmt* statement, int parameter, std::string_view text, sqlite3_destructor_type ownership) {
    const char* const bytes = text.data() == nullptr ? "" : text.data();
    check(sqlite3_bind_text64(statement, parameter, bytes, text.size(), ownership, SQLITE_UTF8),
          "Error binding string param");
}

void bindBlob(sqlite3_stmt* statement, int parameter, const void* bytes, std::size_t size,
              sqlite3_destructor_type ownership) {
    check(sqlite3_bind_blob64(statement, parameter, size == 0 ? "" : bytes, size, ownership),
          "Error binding blob param");
}

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

CppSQLite3Exception::CppSQLite3Exception(int code, const char* text, bool freeText)
    : std::runtime_error(formatMessage(code, text, freeText)), m_code(code) {}

// ---------------------------------------------------------------------------------------------------------- Query

CppSQLite3Query::CppSQLite3Query(sqlite3* connection, sqlite3_stmt* statement, bool ownsStatement)
    : m_connection(connection), m_statement(statement), m_eof(false), m_ownsStatement(ownsStatement) {
    nextRow();
    m_columnCount = sqlite3_column_count(m_statement);
}

CppSQLite3Query::CppSQLite3Query(CppSQLite3Query&& other) noexcept {
    *this = std::move(other);
}

CppSQLite3Query& CppSQLite3Query::operator=(CppSQLite3Query&& other) noexcept {
    if (this != &other) {
        // A statement that was executed again already serves the query that comes.
        if (m_ownsStatement || m_statement != other.m_statement)
            release();
        m_connection = other.m_connection;
        m_statement = std::exchange(other.m_statement, nullptr);
        m_eof = other.m_eof;
        m_columnCount = other.m_columnCount;
        m_ownsStatement = other.m_ownsStatement;
    }
    return *this;
}

CppSQLite3Query::~CppSQLite3Query() {
    release();
}

int CppSQLite3Query::release() noexcept {
    sqlite3_stmt* const statement = std::exchange(m_statement, nullptr);
    return m_ownsStatement ? sqlite3_finalize(statement) : sqlite3_reset(statement);
}

void CppSQLite3Query::finalize() {
    check(release(), m_connection);
}

bool CppSQLite3Query::eof() const {
    handle();
    return m_eof;
}

void CppSQLite3Query::nextRow() {
    if (eof())
        return;  // a further step would run the statement again
    const int code = sqlite3_step(handle());
    m_eof = code == SQLITE_DONE;
    if (code != SQLITE_DONE && code != SQLITE_ROW) {
        const std::string text = sqlite3_errmsg(m_connection);
        release();
        fail(code, text.c_str());
    }
}

int CppSQLite3Query::numFields() const {
    handle();
    return m_columnCount;
}

std::string_view CppSQLite3Query::fieldName(int column) const {
    const char* const name = sqlite3_column_name(handleOf(column), column);
    if (name == nullptr)
        fail(SQLITE_NOMEM, "out of memory");
    return name;
}

int CppSQLite3Query::fieldDataType(int column) const {
    return sqlite3_column_type(handleOf(column), column);
}

std::string_view CppSQLite3Query::fieldValue(int column) const {
    sqlite3_stmt* const statement = handleOf(column);
    const unsigned char* const text = sqlite3_column_text(statement, column);
    if (text == nullptr)
        return {};
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

int CppSQLite3Query::getIntField(int column) const {
    return sqlite3_column_int(handleOf(column), column);
}

std::int64_t CppSQLite3Query::getInt64Field(int column) const {
    return sqlite3_column_int64(handleOf(column), column);
}

double CppSQLite3Query::getFloatField(int column) const {
    return sqlite3_column_double(handleOf(column), column);
}

const unsigned char* CppSQLite3Query::getBlobField(int column, int& length) const {
    sqlite3_stmt* const statement = handleOf(column);
    const void* const bytes = sqlite3_column_blob(statement, column);
    length = sqlite3_column_bytes(statement, column);
    return static_cast<const unsigned char*>(bytes);
}

sqlite3_stmt* CppSQLite3Query::handle() const {
    return required(m_statement, g_noStatement);
}

sqlite3_stmt* CppSQLite3Query::handleOf(int column) const {
    sqlite3_stmt* const statement = handle();
    if (column < 0 || column >= m_columnCount)
        failOwn(g_noField);
    return statement;
}

// ------------------------------------------------------------------------------------------------------ Statement

CppSQLite3Statement::CppSQLite3Statement(sqlite3* connection, sqlite3_stmt* statement)
    : m_connection(connection), m_statement(statement) {}

CppSQLite3Statement::CppSQLite3Statement(CppSQLite3Statement&& other) noexcept
    : m_connection(other.m_connection), m_statement(std::exchange(other.m_statement, nullptr)) {}

CppSQLite3Statement& CppSQLite3Statement::operator=(CppSQLite3Statement&& other) noexcept {
    if (this != &other) {
        sqlite3_finalize(m_statement);
        m_connection = other.m_connection;
        m_statement = std::exchange(other.m_statement, nullptr);
    }
    return *this;
}

CppSQLite3Statement::~CppSQLite3Statement() {
    sqlite3_finalize(m_statement);
}

void CppSQLite3Statement::bind(int parameter, double value) {
    check(sqlite3_bind_double(handle(), parameter, value), "Error binding double param");
}

void CppSQLite3Statement::bindInt64(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(handle(), parameter, value), "Error binding int64 param");
}

void CppSQLite3Statement::bind(int parameter, std::string_view text) {
    bindText(handle(), parameter, text, SQLITE_TRANSIENT);
}

void CppSQLite3Statement::bindBorrowed(int parameter, std::string_view text) {
    bindText(handle(), parameter, text, SQLITE_STATIC);
}

void CppSQLite3Statement::bind(int parameter, const void* bytes, std::size_t size) {
    bindBlob(handle(), parameter, bytes, size, SQLITE_TRANSIENT);
}

void CppSQLite3Statement::bindBorrowed(int parameter, const void* bytes, std::size_t size) {
    bindBlob(handle(), parameter, bytes, size, SQLITE_STATIC);
}

void CppSQLite3Statement::bindNull(int parameter) {
    check(sqlite3_bind_null(handle(), parameter), "Error binding NULL param");
}

int CppSQLite3Statement::execDML() {
    const int code = sqlite3_step(handle());
    const int changes = sqlite3_changes(m_connection);
    const int resetCode = sqlite3_reset(m_statement);
    if (code != SQLITE_DONE)
        fail(resetCode, sqlite3_errmsg(m_connection));
    return changes;
}

CppSQLite3Query CppSQLite3Statement::execQuery() {
    sqlite3_reset(handle());  // an earlier query may still stand in the middle
    return CppSQLite3Query(m_connection, m_statement, false);
}

void CppSQLite3Statement::reset() {
    check(sqlite3_reset(handle()), m_connection);
}

sqlite3_stmt* CppSQLite3Statement::handle() const {
    return required(m_statement, g_noStatement);
}

// ---------------------------------------------------------------------------------------------------------- Table

CppSQLite3Table::CppSQLite3Table(char** results, int rows, int columns)
    : m_results(results), m_rows(rows), m_columns(columns) {}

CppSQLite3Table::CppSQLite3Table(CppSQLite3Table&& other) noexcept
    : m_results(std::exchange(other.m_results, nullptr)), m_rows(other.m_rows), m_columns(other.m_columns) {}

CppSQLite3Table& CppSQLite3Table::operator=(CppSQLite3Table&& other) noexcept {
    if (this != &other) {
        finalize();
        m_results = std::exchange(other.m_results, nullptr);
        m_rows = other.m_rows;
        m_columns = other.m_columns;
    }
    return *this;
}

CppSQLite3Table::~CppSQLite3Table() {
    finalize();
}

void CppSQLite3Table::finalize() {
    sqlite3_free_table(std::exchange(m_results, nullptr));
}

int CppSQLite3Table::numFields() const {
    required(m_results, "Null Results pointer");
    return m_columns;
}

int CppSQLite3Table::numRows() const {
    required(m_results, "Null Results pointer");
    return m_rows;
}

const char* CppSQLite3Table::fieldName(int column) const {
    return cell(0, column);
}

const char* CppSQLite3Table::fieldValue(int row, int column) const {
    if (row < 0 || row >= numRows())
        failOwn(g_noField);
    return cell(row + 1, column);
}

const char* CppSQLite3Table::cell(int row, int column) const {
    if (column < 0 || column >= numFields())
        failOwn(g_noField);
    return m_results[static_cast<std::ptrdiff_t>(row) * m_columns + column];
}

// ------------------------------------------------------------------------------------------------------- Database

CppSQLite3DB::~CppSQLite3DB() {
    sqlite3_close_v2(m_connection);
}

void CppSQLite3DB::open(const std::string& fileName, OpenMode mode) {
    close();
    const OpenCall call = openCall(fileName, mode);
    const int code = sqlite3_open_v2(call.name.c_str(), &m_connection, call.flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string text = sqlite3_errmsg(m_connection);
        sqlite3_close(std::exchange(m_connection, nullptr));
        fail(code, text.c_str());
    }
    m_mode = mode;
    setBusyTimeout(m_busyTimeout);
    if (mode == OpenMode::Private)
        execDML("PRAGMA journal_mode=MEMORY");
}

void CppSQLite3DB::setBusyTimeout(int milliseconds) {
    m_busyTimeout = milliseconds;
    check(sqlite3_busy_timeout(handle(), milliseconds), m_connection);
}

void CppSQLite3DB::close() {
    check(sqlite3_close(m_connection), "Unable to close database");
    m_connection = nullptr;
}

void CppSQLite3DB::distrustContent() {
    check(sqlite3_db_config(handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr), m_connection);
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
    check(sqlite3_file_control(handle(), g_mainDatabase, SQLITE_FCNTL_HAS_MOVED, &moved), m_connection);
    return moved != 0;
}

bool CppSQLite3DB::usesWriteAheadLog() const {
    constexpr sqlite3_int64 readVersionOffset = 19;
    constexpr unsigned char writeAheadVersion = 2;
    // Through SQLite's own descriptor: closing another one would drop the locks of all connections to the file.
    sqlite3_file* file = nullptr;
    check(sqlite3_file_control(handle(), g_mainDatabase, SQLITE_FCNTL_FILE_POINTER, &file), m_connection);
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
    return sqlite3_changes(m_connection);
}

CppSQLite3Query CppSQLite3DB::execQuery(const std::string& sql) {
    return CppSQLite3Query(m_connection, prepare(sql), true);
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
    return CppSQLite3Table(results, rows, columns);
}

CppSQLite3Statement CppSQLite3DB::compileStatement(const std::string& sql) {
    return CppSQLite3Statement(m_connection, prepare(sql));
}

std::int64_t CppSQLite3DB::lastRowId() const {
    return sqlite3_last_insert_rowid(handle());
}

sqlite3* CppSQLite3DB::handle() const {
    return required(m_connection, "Database not open");
}

sqlite3_stmt* CppSQLite3DB::prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(handle(), sql.c_str(), -1, &statement, nullptr), m_connection);
    return statement;
}

}  // namespace kvan::cppsqlite
