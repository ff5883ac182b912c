#include "path_expansion.h"

#include <sysutils/environment.h>
#include <sysutils/platform.h>
#include <sysutils/process.h>
#include <sysutils/text_conversion.h>

#include <boost/filesystem/path.hpp>
#include <boost/throw_exception.hpp>
#include <cstdlib>
#include <iomanip>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>

// Tokens are replaced in one pass from left to right, and what was put in is not looked at again: the value of a
// variable may hold "${" without starting anything. A token that is not known stays in the path as it is, an unset
// variable becomes nothing. The text is wide inside; a value that is no valid UTF-8 throws.
namespace kvan::logging::impl {

namespace {

std::wstring stringified(const std::string& value) {
    try {
        return sys::do_widen(value);
    } catch (const std::range_error&) {
        BOOST_THROW_EXCEPTION(std::runtime_error("Value could not be stringified"));
    }
}

std::wstring stringified(const boost::filesystem::path& value) {
    return stringified(sys::pathToUtf8(value));
}

std::wstring hexadecimal(std::uint64_t value) {
    std::wostringstream digits;
    // A host's locale may group digits.
    digits.imbue(std::locale::classic());
    digits << std::hex << value;
    return digits.str();
}

std::wstring environmentVariable(const std::wstring& name) {
    // Names of variables are bytes of the system; the text of the configuration is UTF-8.
    const char* value = std::getenv(sys::do_narrow(name).c_str());
    return value != nullptr ? stringified(std::string(value)) : std::wstring();
}

std::optional<std::wstring> valueOf(const std::wstring& token) {
    constexpr std::wstring_view environment = L"env:";
    if (token == L"exe.home")
        return stringified(sys::executablePath().parent_path());
    if (token == L"user.home")
        return stringified(sys::userHome());
    if (token == L"user.data.home")
        return stringified(sys::userDataHome());
    if (token == L"pid")
        return std::to_wstring(sys::processId());
    if (token == L"xpid")
        return hexadecimal(sys::processId());
    if (token.starts_with(environment))
        return environmentVariable(token.substr(environment.size()));
    return std::nullopt;
}

}  // namespace

std::wstring expandTokens(const std::wstring& text) {
    constexpr std::wstring_view opening = L"${";
    std::wstring expanded;
    std::size_t done = 0;
    for (;;) {
        const std::size_t open = text.find(opening, done);
        const std::size_t close = open == std::wstring::npos ? open : text.find(L'}', open);
        // No token is open any more: the rest goes as it is.
        if (close == std::wstring::npos)
            return expanded.append(text, done);
        expanded.append(text, done, open - done);
        const std::size_t inside = open + opening.size();
        if (const auto value = valueOf(text.substr(inside, close - inside))) {
            expanded += *value;
            done = close + 1;
        } else {
            // Only the opening is passed: another token may stand inside of the unknown one.
            expanded += opening;
            done = inside;
        }
    }
}

}  // namespace kvan::logging::impl
