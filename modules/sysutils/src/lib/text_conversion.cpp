#include <sysutils/text_conversion.h>

#include <boost/throw_exception.hpp>
#include <iterator>
#include <stdexcept>

#include <utf8.h>

// UTF-8 on the narrow side, whatever the locale says: texts of files must not depend on who reads them. Each conversion
// stops at the first byte or code point that is not well-formed and throws; nothing is replaced or dropped.
namespace kvan::sys {

// Where a wide character is a UTF-16 unit, the calls below would have to be others.
static_assert(sizeof(wchar_t) == 4, "wide text holds whole code points");

std::wstring do_widen(std::string_view text) {
    std::wstring wide;
    try {
        utf8::utf8to32(text.begin(), text.end(), std::back_inserter(wide));
    } catch (const utf8::exception&) {
        BOOST_THROW_EXCEPTION(std::range_error("bad conversion"));
    }
    return wide;
}

std::string do_narrow(std::wstring_view text) {
    std::string narrow;
    try {
        utf8::utf32to8(text.begin(), text.end(), std::back_inserter(narrow));
    } catch (const utf8::exception&) {
        BOOST_THROW_EXCEPTION(std::range_error("bad conversion"));
    }
    return narrow;
}

}  // namespace kvan::sys
