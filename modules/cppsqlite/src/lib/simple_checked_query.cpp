#include <cppsqlite/simple_checked_query.h>

#include <boost/lexical_cast.hpp>
#include <boost/throw_exception.hpp>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

// The value comes as SQLite's text and is converted strictly: where SQLite itself would make a number of anything, a
// column of another type is a fault of the database that must show.
namespace kvan::cppsqlite {

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

template <class T>
T simpleCheckedQuery(CppSQLite3DB& database, const std::string& query) {
    if (auto value = simpleOptionalQuery<T>(database, query))
        return *std::move(value);
    BOOST_THROW_EXCEPTION(std::runtime_error("Query result unexpectedly empty: " + query));
}

// The types that the header names, once for all callers: the conversion is costly to compile.
template std::optional<int> simpleOptionalQuery<int>(CppSQLite3DB&, const std::string&);
template std::optional<std::int64_t> simpleOptionalQuery<std::int64_t>(CppSQLite3DB&, const std::string&);
template std::optional<std::string> simpleOptionalQuery<std::string>(CppSQLite3DB&, const std::string&);
template int simpleCheckedQuery<int>(CppSQLite3DB&, const std::string&);
template std::int64_t simpleCheckedQuery<std::int64_t>(CppSQLite3DB&, const std::string&);
template std::string simpleCheckedQuery<std::string>(CppSQLite3DB&, const std::string&);

}  // namespace kvan::cppsqlite
