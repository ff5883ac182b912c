#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <boost/lexical_cast.hpp>
#include <boost/throw_exception.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kvan::cppsqlite {

/// The one value that `query` gives, for T of `std::int64_t`, `int` and `std::string`; nothing when there is no row.
/// Throws `std::runtime_error` when there is more than one, a NULL or a text that is no T.
template <class T>
std::optional<T> simpleOptionalQuery(CppSQLite3DB& database, const std::string& query) {
    const auto refuse = [&query](const char* fault) { BOOST_THROW_EXCEPTION(std::runtime_error(fault + query)); };
    CppSQLite3Query result = database.execQuery(query);
    if (result.eof())
        return {};
    if (result.fieldIsNull(0))
        refuse("Query result unexpectedly NULL: ");
    const std::string_view text = result.fieldValue(0);
    T value{};
    if constexpr (std::is_same_v<T, std::string>)
        value = text;
    else if (!boost::conversion::try_lexical_convert(text.data(), text.size(), value))
        refuse("Query result has wrong type: ");
    result.nextRow();
    if (!result.eof())
        refuse("Query resulted in more than one result: ");
    return value;
}

/// As `simpleOptionalQuery`, but throws `std::runtime_error` when there is no row as well.
template <class T>
T simpleCheckedQuery(CppSQLite3DB& database, const std::string& query) {
    if (auto value = simpleOptionalQuery<T>(database, query))
        return *std::move(value);
    BOOST_THROW_EXCEPTION(std::runtime_error("Query result unexpectedly empty: " + query));
}

}  // namespace kvan::cppsqlite
