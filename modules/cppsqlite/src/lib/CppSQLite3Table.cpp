#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3Table.h>

#include <cstddef>
#include <utility>

// A result of `sqlite3_get_table`: one array of texts, the names of the columns first and then row by row, which SQLite
// allocates and frees as a whole. Row and column are held against it before each access.
namespace kvan::cppsqlite {

namespace {
constexpr const char* g_noResults = "Null Results pointer";
}

CppSQLite3Table::CppSQLite3Table(Results results, int rows, int columns)
    : m_results(std::move(results)), m_rows(rows), m_columns(columns) {}

CppSQLite3Table::~CppSQLite3Table() = default;

void CppSQLite3Table::Free::operator()(char** results) const noexcept {
    sqlite3_free_table(results);
}

void CppSQLite3Table::finalize() {
    // A finished table refuses every question; a second end is none.
    m_results.reset();
}

int CppSQLite3Table::numFields() const {
    required(m_results.get(), g_noResults);
    return m_columns;
}

int CppSQLite3Table::numRows() const {
    required(m_results.get(), g_noResults);
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
    // One more row than `numRows` says: the names stand before the first one.
    return m_results[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                     static_cast<std::size_t>(column)];
}

}  // namespace kvan::cppsqlite
