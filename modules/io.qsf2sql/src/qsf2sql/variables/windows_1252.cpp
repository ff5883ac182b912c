#include "qsf2sql/variables/windows_1252.h"

#include <algorithm>
#include <iterator>

#include <utf8/unchecked.h>

namespace kvan::io::qsf2sql {

namespace {

/// Code points of the bytes 0x80 to 0x9F; all others are code points as they stand. Tolerated: the five bytes that the
/// code page leaves undefined give the control characters of the same number.
constexpr char16_t g_upperControls[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                          0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t codePoint(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? g_upperControls[byte - 0x80] : byte;
}

}  // namespace

std::string windows1252ToUtf8(std::string_view text) {
    std::string buffer;
    return std::string(windows1252ToUtf8(text, buffer));
}

// Most texts are ASCII and go on without a copy.
std::string_view windows1252ToUtf8(std::string_view text, std::string& buffer) {
    if (std::none_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }))
        return text;
    buffer.clear();
    for (const char byte : text)
        utf8::unchecked::append(codePoint(static_cast<unsigned char>(byte)), std::back_inserter(buffer));
    return buffer;
}

}  // namespace kvan::io::qsf2sql
