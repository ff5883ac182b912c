#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace qsf2sql_tool {

/// A database that is only read. Failures throw `std::runtime_error` with SQLite's words.
class Database {
public:
    /// `path` is UTF-8.
    explicit Database(const std::string& path);

private:
    friend class Query;
    struct Close {
        void operator()(sqlite3* connection) const;
    };
    std::unique_ptr<sqlite3, Close> m_connection;
};

/// One SELECT, row by row: `while (query.next()) ...`. Columns count from 0, parameters from 1.
class Query {
public:
    Query(Database& database, const std::string& sql);

    void bind(int parameter, std::int64_t value);
    void bind(int parameter, std::optional<double> value);

    bool next();

    std::optional<std::int64_t> integer(int column) const;
    std::optional<double> real(int column) const;
    std::string text(int column) const;
    /// Of a blob, zero bytes included.
    std::string bytes(int column) const;

private:
    [[noreturn]] void fail() const;
    bool isNull(int column) const;

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

}  // namespace qsf2sql_tool
