#pragma once

#include <string>
#include <string_view>

/// Between the narrow text of interfaces and files, which is UTF-8 whatever the locale, and the wide text inside.
namespace kvan::sys {

/// Both throw `std::range_error` "bad conversion" for text that is not well-formed.
std::wstring do_widen(std::string_view text);
std::string do_narrow(std::wstring_view text);

}  // namespace kvan::sys
