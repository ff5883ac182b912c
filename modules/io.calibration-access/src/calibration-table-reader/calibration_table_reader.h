#pragma once

#include "calibration-table-reader/typed_row.h"

#include <optional>

namespace kvan::io::calibration::tables {

/// Finds rows of one table of models. The columns of a row are the Id, the model's number, the extra columns, and from
/// `firstModelColumn` on the numbers of the model: all other columns of the table in its order, whatever their names.
/// They are found once; the database must outlive the reader.
class CalibrationTableReader {
public:
    static constexpr int Id = 0;
    static constexpr int ModelType = 1;
    static constexpr int FirstExtra = 2;

    /// Rows are those of the state, or with no state of the whole table. `table` must stay. Throws `std::runtime_error`
    /// "Too few columns in table " and the name when no column of a model is left or there is no such table,
    /// `CppSQLite3Exception` when one of the others is missing.
    CalibrationTableReader(cppsqlite::CppSQLite3DB& database, const char* table,
                           const std::vector<std::string>& extraColumns, std::optional<std::int64_t> state = {});

    TypedRow find(std::int64_t id);

    int firstModelColumn() const { return m_firstModelColumn; }

private:
    const char* m_table;
    int m_firstModelColumn;
    cppsqlite::CppSQLite3Statement m_rowById;
};

}  // namespace kvan::io::calibration::tables
