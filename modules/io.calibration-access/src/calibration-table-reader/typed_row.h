#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvan::io::calibration::tables {

/// A row of a calibration database, or its absence, read strictly: a value that is needed must be there in its type,
/// since a number that SQLite made of something else would be a wrong calibration. Columns count from 0. All functions
/// throw `std::runtime_error` "Too few columns in table " and the name for a column that is not there, and one that
/// names table, row and column for a value of another type.
class TypedRow {
public:
    /// The row where `query` stands. `keyColumn` and `key` say which row of the table it is; both texts must stay.
    TypedRow(cppsqlite::CppSQLite3Query&& query, const char* table, const char* keyColumn, std::int64_t key)
        : m_query(std::move(query)), m_table(table), m_keyColumn(keyColumn), m_key(key) {}

    bool exists() const { return !m_query.eof(); }

    double real(int column) const;
    /// Also of a real value that is a whole number, as a column of type REAL gives it.
    std::int64_t integer(int column) const;
    /// Of the range of `int`.
    int smallInteger(int column) const;
    /// Of a blob of doubles, little-endian, one at least.
    std::vector<double> reals(int column) const;

    bool isNull(int column) const { return typeOf(column) == SQLITE_NULL; }
    /// The first column from `first` on that holds a blob.
    std::optional<int> findBlob(int first) const;

    /// Throws `std::runtime_error` "Wrong value in table ..." with `fault` as its reason.
    [[noreturn]] void fail(int column, const std::string& fault) const;

private:
    int typeOf(int column) const;

    cppsqlite::CppSQLite3Query m_query;
    const char* m_table;
    const char* m_keyColumn;
    std::int64_t m_key;
};

}  // namespace kvan::io::calibration::tables
