#include <sysutils/text_conversion.h>

#include <boost/throw_exception.hpp>
#include <iterator>
#include <stdexcept>

#include <utf8.h>

namespace kvan::sys {

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
