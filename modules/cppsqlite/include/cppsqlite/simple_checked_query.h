#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kvan::cppsqlite {

/// The one value that `query` gives, for T of `std::int64_t`, `int` and `std::string`; nothing when there is no row.
/// Throws `std::runtime_error` when there is more than one, a NULL or a text that is no T.
template <class T>
std::optional<T> simpleOptionalQuery(CppSQLite3DB& database, const std::string& query);

/// As `simpleOptionalQuery`, but throws `std::runtime_error` when there is no row as well.
template <class T>
T simpleCheckedQuery(CppSQLite3DB& database, const std::string& query);

}  // namespace kvan::cppsqlite
