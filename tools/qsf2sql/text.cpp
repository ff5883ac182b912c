#include "text.h"

#include <algorithm>
#include <array>
#include <charconv>

// Numbers are written by `to_chars`: streams and printf would follow the locale, whose decimal comma no program can
// read again. Widths count characters of UTF-8, not bytes.

namespace qsf2sql_tool {

namespace {

/// Room for the longest double without an exponent.
using Digits = std::array<char, 512>;

/// Blanks that `text` lacks to fill `width` columns.
std::string padding(const std::string& text, std::size_t width) {
    const auto continues = [](unsigned char byte) { return (byte & 0xC0) == 0x80; };  // a character that began before
    const auto characters = text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
    return std::string(width > characters ? width - characters : 0, ' ');
}

}  // namespace

std::string fixed(double value, int decimals) {
    Digits digits;
    return {digits.data(),
            std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals).ptr};
}

std::string shortest(double value) {
    Digits digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr};
}

std::string significant(double value, int precision) {
    Digits digits;
    return {
        digits.data(),
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, precision).ptr};
}

std::string byteSize(std::uint64_t bytes) {
    constexpr const char* units[] = {" B", " kB", " MB", " GB", " TB"};
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    // From there on one decimal would round to 1000.0.
    for (; value >= 999.95 && unit + 1 < std::size(units); ++unit)
        value /= 1000.0;
    return fixed(value, unit == 0 ? 0 : 1) + units[unit];
}

std::string padLeft(const std::string& text, std::size_t width) {
    return padding(text, width) + text;
}

std::string padRight(const std::string& text, std::size_t width) {
    return text + padding(text, width);
}

std::string printable(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, ' ');
    return text;
}

}  // namespace qsf2sql_tool
