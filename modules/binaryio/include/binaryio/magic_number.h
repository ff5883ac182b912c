#pragma once

#include <binaryio/binary_base.h>

#include <string>

namespace kvan::binaryio {

/// The tag of a record as a 32-bit number, a hash of the tag's name. 0 means not set.
///
/// Names are remembered in one registry of the process, for messages only. Any thread may construct and compare.
class MagicNumber {
public:
    MagicNumber() = default;
    explicit MagicNumber(std::uint32_t value) : m_value(value) {}
    /// The number of `name`, which is remembered.
    explicit MagicNumber(const char* name);

    /// Over the bytes of the name, a 16-bit value is exclusive-ored with the byte and rotated left by one; the result
    /// stands between 0xBFA and the length of the name, which is exclusive-ored in as well.
    static std::uint32_t valueOf(const char* name);
    /// The name remembered for `value`, or "<unknown number>".
    static std::string nameOf(std::uint32_t value);

    std::uint32_t getValue() const { return m_value; }

    /// Throws `BinaryFailure` that names both if `found` is another number.
    void assertMagicIs(std::uint32_t found) const;

    friend bool operator==(const MagicNumber&, const MagicNumber&) = default;

private:
    std::uint32_t m_value = 0;
};

/// Reads a number and asserts that it is `magic`, which adopts it if it is not set.
IBinaryBase& operator>>(IBinaryBase& stream, MagicNumber& magic);

}  // namespace kvan::binaryio
