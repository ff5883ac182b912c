#include "sql.h"

#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <stdexcept>

#include <sqlite3.h>

namespace qsf2sql_tool {

namespace {

[[noreturn]] void throwError(sqlite3* connection) {
    throw std::runtime_error(std::string("cache: ") +
                             (connection != nullptr ? sqlite3_errmsg(connection) : "out of memory"));
}

}  // namespace

void Database::Close::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

Database::Database(const std::string& path) {
    sqlite3* connection = nullptr;
    // Absolute, so that no name is taken for a URI.
    const std::string name = boost::filesystem::absolute(kvan::sys::pathFromUtf8(path)).string();
    const int result = sqlite3_open_v2(name.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
    m_connection.reset(connection);
    if (result != SQLITE_OK)
        throwError(connection);
    sqlite3_busy_timeout(connection, 10'000);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

void Query::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Query::Query(Database& database, const std::string& sql) {
    sqlite3* const connection = database.m_connection.get();
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        throwError(connection);
    m_statement.reset(statement);
}

void Query::bind(int parameter, std::int64_t value) {
    if (sqlite3_bind_int64(m_statement.get(), parameter, value) != SQLITE_OK)
        fail();
}

void Query::bind(int parameter, std::optional<double> value) {
    const int result = value ? sqlite3_bind_double(m_statement.get(), parameter, *value)
                             : sqlite3_bind_null(m_statement.get(), parameter);
    if (result != SQLITE_OK)
        fail();
}

bool Query::next() {
    const int result = sqlite3_step(m_statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        fail();
    return result == SQLITE_ROW;
}

bool Query::isNull(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

std::optional<std::int64_t> Query::integer(int column) const {
    if (isNull(column))
        return std::nullopt;
    return sqlite3_column_int64(m_statement.get(), column);
}

std::optional<double> Query::real(int column) const {
    if (isNull(column))
        return std::nullopt;
    return sqlite3_column_double(m_statement.get(), column);
}

std::string Query::text(int column) const {
    const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column));
    return bytes != nullptr
               ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column)))
               : std::string();
}

std::string Query::bytes(int column) const {
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    return bytes != nullptr ? std::string(bytes, size) : std::string();
}

void Query::fail() const {
    throwError(sqlite3_db_handle(m_statement.get()));
}

}  // namespace qsf2sql_tool
