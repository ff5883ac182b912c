#include "calibration-table-reader/calibration_table_reader.h"

#include <cppsqlite/sql_text.h>

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/throw_exception.hpp>
#include <locale>
#include <stdexcept>

namespace kvan::io::calibration::tables {

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(), [&name](const std::string& other) {
        return boost::iequals(name, other, std::locale::classic());
    });
}

/// The columns of the table that are numbers of a model, in its order.
std::vector<std::string> modelColumns(cppsqlite::CppSQLite3DB& database, const char* table,
                                      const std::vector<std::string>& extraColumns) {
    constexpr int nameField = 1;
    const std::vector<std::string> ownColumns = {"Id", "ModelType", "CalibrationState"};
    std::vector<std::string> columns;
    auto info = database.execQuery(std::string("PRAGMA TABLE_INFO(") + table + ")");
    for (; !info.eof(); info.nextRow()) {
        std::string name(info.fieldValue(nameField));
        if (!contains(ownColumns, name) && !contains(extraColumns, name))
            columns.push_back(std::move(name));
    }
    if (columns.empty())
        BOOST_THROW_EXCEPTION(std::runtime_error(std::string("Too few columns in table ") + table));
    return columns;
}

std::string rowQuery(const char* table, const std::vector<std::string>& extraColumns,
                     const std::vector<std::string>& columns, std::optional<std::int64_t> state) {
    std::string query = "SELECT c.Id, c.ModelType, ";
    for (const std::string& name : extraColumns)
        query += "c." + name + ", ";
    for (const std::string& name : columns)
        query += (&name == columns.data() ? "c." : ", c.") + cppsqlite::sqlName(name);
    query += std::string(" FROM ") + table;
    if (!state)
        return query + " c WHERE c.Id = ?";
    return query + " c WHERE c.CalibrationState=" + std::to_string(*state) + " AND c.Id = ?";
}

}  // namespace

CalibrationTableReader::CalibrationTableReader(cppsqlite::CppSQLite3DB& database, const char* table,
                                               const std::vector<std::string>& extraColumns,
                                               std::optional<std::int64_t> state)
    : m_table(table),
      m_firstModelColumn(FirstExtra + static_cast<int>(extraColumns.size())),
      m_rowById(database.compileStatement(
          rowQuery(table, extraColumns, modelColumns(database, table, extraColumns), state))) {}

TypedRow CalibrationTableReader::find(std::int64_t id) {
    m_rowById.bind(1, id);
    return TypedRow(m_rowById.execQuery(), m_table, "Id", id);
}

}  // namespace kvan::io::calibration::tables
