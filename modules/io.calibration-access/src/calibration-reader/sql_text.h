#pragma once

#include <boost/algorithm/string/replace.hpp>
#include <string>

namespace kvan::io::calibration {

/// `text` between two `quote` characters, those in it doubled.
inline std::string quoted(const std::string& text, const std::string& quote) {
    return quote + boost::replace_all_copy(text, quote, quote + quote) + quote;
}

/// `text` as a literal of SQL.
inline std::string sqlText(const std::string& text) {
    return quoted(text, "'");
}

/// `name` as the name of a column, whatever is in it.
inline std::string sqlName(const std::string& name) {
    return quoted(name, "\"");
}

}  // namespace kvan::io::calibration
