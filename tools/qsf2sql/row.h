#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// The cache as the subcommands read it: a value may be missing, and a failure is about the cache.
namespace qsf2sql_tool {

using Database = kvan::cppsqlite::CppSQLite3DB;
using Row = kvan::cppsqlite::CppSQLite3Query;

// The value in a column, counted from 0; nothing, or an empty text, for NULL.
inline std::optional<std::int64_t> integer(const Row& row, int column) {
    return row.fieldIsNull(column) ? std::nullopt : std::optional(row.getInt64Field(column));
}
inline std::optional<double> real(const Row& row, int column) {
    return row.fieldIsNull(column) ? std::nullopt : std::optional(row.getFloatField(column));
}
inline std::string text(const Row& row, int column) {
    return std::string(row.fieldValue(column));
}

/// Runs what reads a cache. Failures of SQLite become `std::runtime_error` "cache: " and SQLite's words.
void readingCache(const std::function<void()>& work);

}  // namespace qsf2sql_tool
