#pragma once

#include "output.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qsf2sql_tool {

enum class TableForm { Text, Csv };
enum class Alignment { Right, Left };

struct Column {
    std::string heading;  ///< of the text form
    std::string csvName;
    std::size_t width = 0;
    int decimals = 0;  ///< of numbers in the text form; the CSV form gives all digits
    Alignment alignment = Alignment::Right;
};

/// Rows of aligned columns, or comma-separated values with names in the first line. Cells are added from
/// left to right; a missing value is "-" in the text form and nothing in the CSV form.
class Table {
public:
    /// Writes the headings.
    Table(Output& output, TableForm form, std::vector<Column> columns);

    void addReal(std::optional<double> value);
    void addInteger(std::optional<std::int64_t> value);
    /// Characters that would control a terminal, and in the CSV form separators, do no harm.
    void addText(const std::string& text);
    void endRow();

private:
    void addCell(const std::string& text);

    Output& m_output;
    TableForm m_form;
    std::vector<Column> m_columns;
    std::size_t m_next = 0;
    std::string m_row;
};

}  // namespace qsf2sql_tool
