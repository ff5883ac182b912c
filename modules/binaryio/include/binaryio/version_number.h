#pragma once

#include <binaryio/binary_base.h>

#include <compare>
#include <optional>
#include <string>
#include <utility>

namespace kvan::binaryio {

/// The version of a record. A default-constructed one is empty: equal to other empty ones and below all others.
class VersionNumber {
public:
    VersionNumber() = default;
    VersionNumber(std::uint16_t major, std::uint16_t minor) : m_parts(std::in_place, major, minor) {}

    bool isValid() const { return m_parts.has_value(); }
    /// 0 for an empty version.
    std::uint16_t getMajor() const { return m_parts ? m_parts->first : std::uint16_t{0}; }
    std::uint16_t getMinor() const { return m_parts ? m_parts->second : std::uint16_t{0}; }
    /// "major.minor"; nothing for an empty version.
    std::string toString() const;

    friend bool operator==(const VersionNumber&, const VersionNumber&) = default;
    friend auto operator<=>(const VersionNumber& left, const VersionNumber& right) {
        return left.m_parts <=> right.m_parts;
    }

private:
    std::optional<std::pair<std::uint16_t, std::uint16_t>> m_parts;
};

/// Stands for reading a value and comparing it with the given one: `stream >> expected_type(version)`.
template <class T>
class expected_type {
public:
    explicit expected_type(T expected) : m_expected(std::move(expected)) {}
    const T& get() const { return m_expected; }

private:
    T m_expected;
};

/// Reads two 16-bit numbers.
IBinaryBase& operator>>(IBinaryBase& stream, VersionNumber& version);

/// Throws `BinaryFailure` if the version read is another one, or if the expected one is empty.
IBinaryBase& operator>>(IBinaryBase& stream, const expected_type<VersionNumber>& expected);

}  // namespace kvan::binaryio
