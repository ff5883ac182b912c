#pragma once

#include <cstdint>

namespace kvan::io {

/// What an array is, the upper 8 bits of its Id.
enum class ArrayKind : std::uint8_t {
    LineIndex = 16,
    LineIntensity = 17,
    LineIndexWidth = 18,
    LinePeakArea = 19,
    LineSnr = 20,
    LineField21 = 21,  ///< read only; no column of the cache refers to it
    LineMz = 22,       ///< computed from the line indices
    ProfileIntensity = 66,
    ProfileMz = 67,  ///< computed from the index range of the scan
};

/// The 64-bit Id of an array: its kind in the upper 8 bits and below them the offset in the main file of the block that
/// holds it. All arrays of one block share the offset.
class ArrayId {
public:
    explicit ArrayId(std::uint64_t value) : m_value(value) {}

    /// Throws `Qsf2SqlFileFormatError` "Offset >= (1<<56)." for an offset that does not fit.
    ArrayId(std::uint64_t offset, ArrayKind kind);

    std::uint64_t value() const { return m_value; }
    std::uint64_t offset() const { return m_value & ((std::uint64_t{1} << 56) - 1); }
    /// As found; may be a value outside the enumeration.
    ArrayKind kind() const { return static_cast<ArrayKind>(m_value >> 56); }
    /// The Id of another array of the same block.
    ArrayId withKind(ArrayKind kind) const { return ArrayId(offset(), kind); }

private:
    std::uint64_t m_value;
};

namespace qsf2sql_detail {

/// How the elements of an array are stored.
enum class NativeType : int {
    Float = 1,
    Double = 2,
    UInt32 = 3,
    Absent = 99,  ///< the block does not have this component
};

}  // namespace qsf2sql_detail

/// What locating an array gives: of what type its elements are, how many there are, and where they begin. Holds
/// whatever is read in between, and promises nothing about any reader.
struct StoredArray {
    qsf2sql_detail::NativeType type = qsf2sql_detail::NativeType::Absent;
    std::uint64_t count = 0;
    /// In the main file: of the first element of a line field, of the block of a scan, whose elements are decoded.
    std::uint64_t position = 0;
};

}  // namespace kvan::io
