#include "table.h"

#include "text.h"

namespace qsf2sql_tool {

Table::Table(Output& output, TableForm form, std::vector<Column> columns)
    : m_output(output), m_form(form), m_columns(std::move(columns)) {
    for (const Column& column : m_columns)
        addCell(m_form == TableForm::Csv ? column.csvName : column.heading);
    endRow();
}

void Table::addReal(std::optional<double> value) {
    if (!value)
        addCell(m_form == TableForm::Csv ? "" : "-");
    else
        addCell(m_form == TableForm::Csv ? shortest(*value) : fixed(*value, m_columns[m_next].decimals));
}

void Table::addInteger(std::optional<std::int64_t> value) {
    addCell(value ? std::to_string(*value) : m_form == TableForm::Csv ? "" : "-");
}

void Table::addText(const std::string& text) {
    addCell(text);
}

void Table::addCell(const std::string& text) {
    if (m_form == TableForm::Csv)
        m_row += (m_next == 0 ? "" : ",") + text;
    else
        m_row += (m_next == 0 ? "" : "  ") + padLeft(text, m_columns[m_next].width);
    ++m_next;
}

void Table::endRow() {
    m_row += '\n';
    m_output.write(m_row);
    m_row.clear();
    m_next = 0;
}

}  // namespace qsf2sql_tool
