#include "serialization/CalibrationTextTokens.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <charconv>
#include <stdexcept>

// Tokens between blanks, read without the locale. A number is taken whole or not at all: "1.5x", hexadecimal digits and
// what does not fit the type are none. A plus sign before a number is passed over: `from_chars` would refuse it.
//
// A vector's count is held against the characters that are left before memory is taken.
namespace kvan::calibration {

namespace {

constexpr std::string_view g_blanks = " \t\n\v\f\r";
constexpr std::string_view g_vectorPrefix = "V1.0VectorDouble";

template <class Number>
std::optional<Number> numberOf(std::string_view token) {
    // A lone sign stays, and is no number.
    if (token.size() > 1 && token[0] == '+' && token[1] != '-')
        token.remove_prefix(1);
    Number number{};
    const char* const end = token.data() + token.size();
    const auto [rest, fault] = std::from_chars(token.data(), end, number);
    if (token.empty() || fault != std::errc() || rest != end)
        return std::nullopt;
    return number;
}

}  // namespace

std::string_view CalibrationTextReader::Token() {
    // At the end, of the line or of the text, tokens are empty, however often one is asked for.
    const std::string_view left = m_text.substr(0, m_end);
    const std::size_t begin = std::min(left.find_first_not_of(g_blanks, m_position), m_end);
    m_position = std::min(left.find_first_of(g_blanks, begin), m_end);
    m_token = left.substr(begin, m_position - begin);
    return m_token;
}

std::optional<double> CalibrationTextReader::Double() {
    return numberOf<double>(Token());
}

std::optional<int> CalibrationTextReader::Int() {
    return numberOf<int>(Token());
}

void CalibrationTextReader::ThrowVectorFailure() {
    BOOST_THROW_EXCEPTION(std::runtime_error("vector deserialization"));
}

/// A token that is no prefix is a vector of one element, as it was written once.
std::vector<double> CalibrationTextReader::Vector() {
    std::vector<double> values;
    if (Token() != g_vectorPrefix) {
        const auto single = numberOf<double>(m_token);
        if (!single)
            ThrowVectorFailure();
        return {*single};
    }
    const auto count = Int();
    // An element takes a blank and a digit at least.
    if (!count || *count < 0 || static_cast<std::size_t>(*count) > (m_end - m_position) / 2)
        ThrowVectorFailure();
    values.reserve(static_cast<std::size_t>(*count));
    for (int k = 0; k < *count; ++k) {
        const auto value = Double();
        if (!value)
            ThrowVectorFailure();
        values.push_back(*value);
    }
    return values;
}

void CalibrationTextReader::LimitToLine() {
    m_end = std::min(m_text.find('\n', m_position), m_text.size());
}

CalibrationTextWriter& CalibrationTextWriter::operator<<(std::string_view token) {
    m_text.append(token).push_back(' ');
    return *this;
}

CalibrationTextWriter& CalibrationTextWriter::operator<<(int value) {
    return *this << std::string_view(std::to_string(value));
}

CalibrationTextWriter& CalibrationTextWriter::operator<<(double value) {
    // Seventeen recover every double; the form has eighteen.
    constexpr int digits = 18;
    char buffer[64];
    const auto end = std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::general, digits).ptr;
    return *this << std::string_view(buffer, static_cast<std::size_t>(end - buffer));
}

CalibrationTextWriter& CalibrationTextWriter::operator<<(const std::vector<double>& values) {
    *this << g_vectorPrefix << static_cast<int>(values.size());
    for (const double value : values)
        *this << value;
    return *this;
}

}  // namespace kvan::calibration
