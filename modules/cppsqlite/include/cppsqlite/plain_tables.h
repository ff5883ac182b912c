#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace kvan::cppsqlite {

/// For a file that somebody else may have written: the first of `names` that is not the name of a table that holds all
/// its values itself. Views, virtual tables and generated columns compute, for ever if they like. Names that stand for
/// nothing are passed over. Runs nothing out of the schema.
std::optional<std::string> findComputedTable(CppSQLite3DB& database, std::initializer_list<const char*> names);

}  // namespace kvan::cppsqlite
