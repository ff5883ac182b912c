#pragma once

#include "serialization/CalibrationTextTokens.h"

#include <algorithm>
#include <boost/throw_exception.hpp>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>

namespace kvan::calibration {

/// Fails in the words of one reading operation, with the last token.
[[noreturn]] inline void throwInvalidPrefix(const CalibrationTextReader& reader, const char* operation) {
    BOOST_THROW_EXCEPTION(std::runtime_error(
        std::string("kvan::calibration::Transformation::CalibrationTransformatorFactorySerialization::") + operation +
        ": Calibration deserialization failed: invalid calibration constants prefix string '" +
        std::string(reader.LastToken()) + "'."));
}

/// Tokens that must be there, in the words of one reading operation.
class CalibrationTextFields {
public:
    CalibrationTextFields(CalibrationTextReader& reader, const char* operation)
        : m_reader(reader), m_operation(operation) {}

    /// Takes a token and gives the place of the prefix that it equals.
    std::size_t Prefix(std::span<const char* const> prefixes) {
        const std::string_view token = m_reader.Token();
        const auto found = std::find(prefixes.begin(), prefixes.end(), token);
        if (found == prefixes.end())
            throwInvalidPrefix(m_reader, m_operation);
        return static_cast<std::size_t>(found - prefixes.begin());
    }
    CalibrationTextReader& Reader() { return m_reader; }
    std::string_view Token() { return m_reader.Token(); }
    double Double() { return valueOf(m_reader.Double()); }
    int Int() { return valueOf(m_reader.Int()); }
    std::vector<double> Vector() { return m_reader.Vector(); }

private:
    template <class Number>
    Number valueOf(const std::optional<Number>& number) {
        if (!number)
            throwInvalidPrefix(m_reader, m_operation);
        return *number;
    }

    CalibrationTextReader& m_reader;
    const char* m_operation;
};

/// Tokens in the manner of a stream: after one that is missing or no number every further number is 0, and the reading
/// operation asks at its end whether all were good. A vector fails at once.
class CalibrationTextStream {
public:
    explicit CalibrationTextStream(CalibrationTextFields& fields) : m_reader(fields.Reader()) {}

    bool Good() const { return m_good; }
    double Double() { return valueOf(m_reader.Double()); }
    int Int() { return valueOf(m_reader.Int()); }
    bool Bool() {
        const int value = Int();
        m_good = m_good && (value == 0 || value == 1);
        return value == 1;
    }
    std::vector<double> Vector() {
        if (!m_good)
            CalibrationTextReader::ThrowVectorFailure();
        return m_reader.Vector();
    }

    // Fields of older writers that have no use.

    void DropInts(int count) {
        drop(count, [this] { Int(); });
    }
    void DropDoubles(int count) {
        drop(count, [this] { Double(); });
    }
    void DropVectors(int count) {
        drop(count, [this] { Vector(); });
    }
    /// What the first writers of KITE and PSD put after the numbers.
    void DropTailOfFirstVersion() {
        DropVectors(4);
        DropInts(1);
    }
    void DropTailOfSecondVersion() {
        DropInts(1);
        DropVectors(1);
        DropDoubles(2);
    }

private:
    template <class Number>
    Number valueOf(const std::optional<Number>& number) {
        m_good = m_good && number.has_value();
        return m_good ? *number : Number{};
    }

    template <class Take>
    static void drop(int count, Take take) {
        for (int k = 0; k < count; ++k)
            take();
    }

    CalibrationTextReader& m_reader;
    bool m_good = true;
};

}  // namespace kvan::calibration
