#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3Statement.h>

#include <utility>

// Statements are made for reuse: what is bound stays bound over a reset, and neither binding nor running allocates
// anything here. Texts and blobs are copied by SQLite unless they are lent. A null pointer would bind NULL, so an empty
// text and an empty blob are given an address.
namespace kvan::cppsqlite {

namespace {

void bindText(sqlite3_stmt* statement, int parameter, std::string_view text, sqlite3_destructor_type ownership) {
    const char* const bytes = text.data() == nullptr ? "" : text.data();
    check(sqlite3_bind_text64(statement, parameter, bytes, text.size(), ownership, SQLITE_UTF8),
          "Error binding string param");
}

void bindBlob(sqlite3_stmt* statement, int parameter, const void* bytes, std::size_t size,
              sqlite3_destructor_type ownership) {
    // A copy is SQLite's to free; what is lent stays the caller's.
    check(sqlite3_bind_blob64(statement, parameter, size == 0 ? "" : bytes, size, ownership),
          "Error binding blob param");
}

}  // namespace

CppSQLite3Statement::CppSQLite3Statement(sqlite3* connection, Handle statement)
    : m_connection(connection), m_statement(std::move(statement)) {}

CppSQLite3Statement::~CppSQLite3Statement() = default;

void CppSQLite3Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
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
    // The reset gives the code of the step that failed; that is the one to report.
    const int resetCode = sqlite3_reset(m_statement.get());
    if (code != SQLITE_DONE)
        fail(resetCode, sqlite3_errmsg(m_connection));
    return changes;
}

CppSQLite3Query CppSQLite3Statement::execQuery() {
    // The query borrows the statement and resets it when it goes, so the statement must outlive it.
    sqlite3_reset(handle());  // an earlier query may still stand in the middle
    return CppSQLite3Query(m_connection, m_statement.get(), false);
}

void CppSQLite3Statement::reset() {
    check(sqlite3_reset(handle()), m_connection);
}

sqlite3_stmt* CppSQLite3Statement::handle() const {
    return required(m_statement.get(), g_noStatement);
}

}  // namespace kvan::cppsqlite
