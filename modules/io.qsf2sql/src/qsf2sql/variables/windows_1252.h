#pragma once

#include <string>
#include <string_view>

namespace kvan::io::qsf2sql {

/// Text of the native files, Windows-1252, as UTF-8. Never fails: the five bytes that the code page leaves undefined
/// give the control characters of the same number. Zero bytes inside the text stay.
std::string windows1252ToUtf8(std::string_view text);

/// The same for many texts: the text itself where it is ASCII, else its conversion in `buffer`.
std::string_view windows1252ToUtf8(std::string_view text, std::string& buffer);

}  // namespace kvan::io::qsf2sql
