#include <cppsqlite/sql_text.h>

// For what cannot be bound: names of tables and columns, and texts of statements that run once. Any byte but the quote
// goes in as it is; a zero byte would end the statement for SQLite.
namespace kvan::cppsqlite {

namespace {

/// SQL has no escapes: a quote inside is written twice.
std::string quoted(std::string_view text, char quote) {
    std::string whole(1, quote);
    for (const char character : text)
        whole.append(character == quote ? 2 : 1, character);
    return whole += quote;
}

}  // namespace

std::string sqlText(std::string_view text) {
    return quoted(text, '\'');
}

std::string sqlName(std::string_view name) {
    return quoted(name, '"');
}

}  // namespace kvan::cppsqlite
