#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <sqlite3.h>

/// SQLite through its C interface with nothing around it, for yardsticks.
namespace benchmarks {

inline void check(int code, sqlite3* connection) {
    if (code != SQLITE_OK && code != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(connection));
}

/// One prepared statement of the yardstick.
class BareStatement {
public:
    BareStatement(sqlite3* connection, const char* sql) : m_connection(connection) {
        check(sqlite3_prepare_v2(connection, sql, -1, &m_statement, nullptr), connection);
    }
    BareStatement(const BareStatement&) = delete;
    ~BareStatement() { sqlite3_finalize(m_statement); }

    void bind(int parameter, sqlite3_value* value) {
        check(sqlite3_bind_value(m_statement, parameter, value), m_connection);
    }
    void bind(int parameter, sqlite3_int64 value) {
        check(sqlite3_bind_int64(m_statement, parameter, value), m_connection);
    }
    void run() {
        check(sqlite3_step(m_statement), m_connection);
        check(sqlite3_reset(m_statement), m_connection);
    }

private:
    sqlite3* m_connection;
    sqlite3_stmt* m_statement = nullptr;
};

/// Rows of a finished cache in memory, ready to be bound.
class Rows {
public:
    Rows(const std::string& cache, const std::string& sql) {
        sqlite3* connection = nullptr;
        check(sqlite3_open(cache.c_str(), &connection), connection);
        sqlite3_stmt* query = nullptr;
        check(sqlite3_prepare_v2(connection, sql.c_str(), -1, &query, nullptr), connection);
        m_columns = sqlite3_column_count(query);
        while (sqlite3_step(query) == SQLITE_ROW)
            for (int column = 0; column < m_columns; ++column)
                m_values.push_back(sqlite3_value_dup(sqlite3_column_value(query, column)));
        sqlite3_finalize(query);
        sqlite3_close(connection);
    }
    Rows(const Rows&) = delete;
    ~Rows() {
        for (sqlite3_value* const value : m_values)
            sqlite3_value_free(value);
    }

    /// Runs `statement` for each row, its columns bound in order.
    void runAll(BareStatement& statement) const {
        for (std::size_t value = 0; value < m_values.size();) {
            for (int column = 1; column <= m_columns; ++column)
                statement.bind(column, m_values[value++]);
            statement.run();
        }
    }

private:
    int m_columns = 0;
    std::vector<sqlite3_value*> m_values;
};

}  // namespace benchmarks
