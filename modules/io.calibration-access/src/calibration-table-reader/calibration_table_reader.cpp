#include "calibration-table-reader/calibration_table_reader.h"

#include <cppsqlite/sql_text.h>

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/throw_exception.hpp>
#include <locale>
#include <stdexcept>

// Tables of models differ in the columns of their models only, and those count by their order. So the columns are asked
// of the database, the known ones are taken out by name, and the rest is selected in the table's order. The statement
// is compiled once; a row costs a binding and a step.
namespace kvan::io::calibration::tables {

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(), [&name](const std::string& other) {
        // Names of columns have no case in SQL.
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
    // A table that does not exist has no columns either.
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
        // Quoted, since the name is any text of the file.
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
