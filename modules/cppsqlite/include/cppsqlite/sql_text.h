#pragma once

#include <string>
#include <string_view>

namespace kvan::cppsqlite {

/// `text` as a literal of SQL, whatever is in it.
std::string sqlText(std::string_view text);

/// `name` as the name of a column or table, whatever is in it.
std::string sqlName(std::string_view name);

}  // namespace kvan::cppsqlite
