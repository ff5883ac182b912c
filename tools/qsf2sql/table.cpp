#include "table.h"

#include "text.h"

// Two forms of one table. For people: columns of fixed width, numbers rounded to their decimals, "-" for what is
// missing, no blanks at the end of a line. For programs: all digits that a double needs to be read again, nothing for
// what is missing, and quotes as RFC 4180 wants them.

namespace qsf2sql_tool {

namespace {

std::string padded(const std::string& text, const Column& column) {
    return column.alignment == Alignment::Left ? padRight(text, column.width) : padLeft(text, column.width);
}

/// In quotes where the text holds what a reader of CSV takes for structure.
std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string field = "\"";
    for (const char byte : text)
        field += byte == '"' ? std::string("\"\"") : std::string(1, byte);
    return field + "\"";
}

}  // namespace

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
    addCell(m_form == TableForm::Csv ? csvField(text) : printable(text));
}

void Table::addCell(const std::string& text) {
    if (m_form == TableForm::Csv)
        m_row += (m_next == 0 ? "" : ",") + text;
    else
        m_row += (m_next == 0 ? "" : "  ") + padded(text, m_columns[m_next]);
    ++m_next;
}

void Table::endRow() {
    // Left-aligned cells are padded; the last one need not be.
    if (m_form == TableForm::Text)
        m_row.resize(m_row.find_last_not_of(' ') + 1);
    m_row += '\n';
    m_output.write(m_row);
    m_row.clear();
    m_next = 0;
}

}  // namespace qsf2sql_tool
