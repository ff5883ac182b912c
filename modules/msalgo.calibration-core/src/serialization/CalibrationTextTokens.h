#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvan::calibration {

/// Blank-separated tokens of a calibration text, which must outlive it. Numbers are decimals with a point, whatever the
/// locale.
class CalibrationTextReader {
public:
    explicit CalibrationTextReader(std::string_view text) : m_text(text), m_end(text.size()) {}

    /// "" at the end.
    std::string_view Token();
    std::string_view LastToken() const { return m_token; }
    /// The next token as a number; nothing if it is none, or has none of that size.
    std::optional<double> Double();
    std::optional<int> Int();
    /// A vector form. Throws `std::runtime_error` "vector deserialization".
    std::vector<double> Vector();
    [[noreturn]] static void ThrowVectorFailure();

    /// Lets the text end with the current line, or with the whole text again.
    void LimitToLine();
    void LiftLimit() { m_end = m_text.size(); }

private:
    std::string_view m_text;
    std::size_t m_position = 0;
    std::size_t m_end;
    std::string_view m_token;
};

/// Appends tokens to a text, each followed by a blank.
class CalibrationTextWriter {
public:
    explicit CalibrationTextWriter(std::string& text) : m_text(text) {}

    CalibrationTextWriter& operator<<(std::string_view token);
    CalibrationTextWriter& operator<<(int value);
    /// With 18 significant digits, from which every double is recovered.
    CalibrationTextWriter& operator<<(double value);
    CalibrationTextWriter& operator<<(const std::vector<double>& values);

private:
    std::string& m_text;
};

}  // namespace kvan::calibration
