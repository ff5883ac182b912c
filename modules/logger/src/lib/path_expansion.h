#pragma once

#include <string>

namespace kvan::logging::impl {

/// `text` with "${exe.home}", "${user.home}", "${user.data.home}", "${pid}", "${xpid}" and "${env:NAME}" replaced, from
/// left to right and once; any other token stays as it is. Throws `std::runtime_error` of `sysutils/environment.h`, or
/// "Value could not be stringified".
std::wstring expandTokens(const std::wstring& text);

}  // namespace kvan::logging::impl
