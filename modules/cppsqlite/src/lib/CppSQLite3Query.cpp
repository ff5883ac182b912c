#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3Query.h>

#include <string>
#include <utility>

// A query stands at a row from its construction on: the first step is taken there, so that `eof` is a question without
// a deed. A statement that has come to its end is never stepped again, because SQLite would run it anew. A step that
// fails ends the query and keeps SQLite's words, which the release of the statement would replace. A query that goes
// ends the read, and with it the lock on the file.
namespace kvan::cppsqlite {

CppSQLite3Query::CppSQLite3Query(sqlite3* connection, sqlite3_stmt* statement, bool ownsStatement)
    : m_connection(connection), m_statement(statement, EndUse{ownsStatement}), m_eof(false) {
    nextRow();
    // After the step: a schema that changed since the statement was prepared has it prepared anew.
    m_columnCount = sqlite3_column_count(m_statement.get());
}

CppSQLite3Query::~CppSQLite3Query() = default;

CppSQLite3Query& CppSQLite3Query::operator=(CppSQLite3Query&& other) noexcept {
    if (this == &other)
        return *this;
    // A statement that was executed again serves the query that comes already; a reset would end that.
    if (m_statement == other.m_statement)
        static_cast<void>(m_statement.release());
    m_connection = other.m_connection;
    m_statement = std::move(other.m_statement);
    m_eof = other.m_eof;
    m_columnCount = other.m_columnCount;
    return *this;
}

int CppSQLite3Query::EndUse::operator()(sqlite3_stmt* statement) const noexcept {
    return owns ? sqlite3_finalize(statement) : sqlite3_reset(statement);
}

void CppSQLite3Query::finalize() {
    const EndUse endUse = m_statement.get_deleter();
    check(endUse(m_statement.release()), m_connection);
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
        m_statement.reset();
        fail(code, text.c_str());
    }
}

int CppSQLite3Query::numFields() const {
    handle();
    return m_columnCount;
}

std::string_view CppSQLite3Query::fieldName(int column) const {
    const char* const name = sqlite3_column_name(handleOf(column), column);
    // SQLite gives a null name only without memory.
    if (name == nullptr)
        fail(SQLITE_NOMEM, "out of memory");
    return name;
}

int CppSQLite3Query::fieldDataType(int column) const {
    return sqlite3_column_type(handleOf(column), column);
}

std::string_view CppSQLite3Query::fieldValue(int column) const {
    sqlite3_stmt* const statement = handleOf(column);
    // The text before its length: the conversion to UTF-8 may change the number of bytes.
    const void* const text = sqlite3_column_text(statement, column);
    if (text == nullptr)
        return {};
    return {static_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
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
    // In this order, for the same reason as with texts.
    const void* const bytes = sqlite3_column_blob(statement, column);
    length = sqlite3_column_bytes(statement, column);
    return static_cast<const unsigned char*>(bytes);
}

std::span<const unsigned char> CppSQLite3Query::blobField(int column) const {
    int length = 0;
    const unsigned char* const bytes = getBlobField(column, length);
    return {bytes, static_cast<std::size_t>(length)};
}

sqlite3_stmt* CppSQLite3Query::handle() const {
    return required(m_statement.get(), g_noStatement);
}

sqlite3_stmt* CppSQLite3Query::handleOf(int column) const {
    sqlite3_stmt* const statement = handle();
    if (column < 0 || column >= m_columnCount)
        failOwn(g_noField);
    return statement;
}

}  // namespace kvan::cppsqlite
