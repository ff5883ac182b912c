#pragma once

#include <cstdint>
#include <string>

/// Numbers and texts for people and for programs, independent of the locale.
namespace qsf2sql_tool {

/// With `decimals` digits after the point.
std::string fixed(double value, int decimals);
/// The fewest digits from which the same double is read again.
std::string shortest(double value);
/// With at most `digits` digits, an exponent where it is shorter, and no zeros at the end.
std::string significant(double value, int digits);
/// "64.2 MB", in powers of 1000.
std::string byteSize(std::uint64_t bytes);
/// `text`, UTF-8, after blanks, or before them, to fill `width` columns.
std::string padLeft(const std::string& text, std::size_t width);
std::string padRight(const std::string& text, std::size_t width);
/// `text` without characters that would control a terminal.
std::string printable(std::string text);

}  // namespace qsf2sql_tool
