#pragma once

#include "compression/block_bytes.h"

#include <bit>

namespace kvan::compression {

static_assert(std::endian::native == std::endian::little);

inline std::uint32_t loadLittleEndian32(const unsigned char* bytes) {
    std::uint32_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

inline std::uint32_t loadBigEndian32(const unsigned char* bytes) {
    return __builtin_bswap32(loadLittleEndian32(bytes));
}

inline std::uint64_t loadBigEndian64(const unsigned char* bytes) {
    std::uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    return __builtin_bswap64(value);
}

/// The front of a bit stream, most significant bit first, in a register. Only `refill` touches memory, eight bytes at a
/// time; whoever calls it has asked `canRefill`, and near the end goes on in a copy with zeros after it.
class BitWindow {
public:
    /// Bits that are there at least after a refill.
    static constexpr unsigned g_refilled = 56;

    BitWindow(const unsigned char* bytes, std::size_t size) : m_bytes(bytes), m_size(size) {}

    bool canRefill() const { return m_position + sizeof(m_bits) <= m_size; }

    void refill() {
        m_bits |= loadBigEndian64(m_bytes + m_position) >> m_count;
        m_position += (m_count ^ 63) >> 3;
        m_count |= g_refilled;
    }

    /// The next bits, left-aligned. Those after the ones that are there are zero or already the right ones.
    std::uint64_t look() const { return m_bits; }

    /// Moves on by `width` bits, 63 at most and not more than are there.
    void skip(unsigned width) {
        m_bits <<= width;
        m_count -= width;
    }

    /// The same by the low byte of `packed`. What stands above it costs nothing, since a shift looks at six bits.
    void skipLowByte(std::uint64_t packed) {
        m_bits <<= packed & 63;
        m_count -= static_cast<unsigned>(packed & 0xFF);
    }

    /// The next `width` bits, 1 to 63, as a number.
    std::uint64_t take(unsigned width) {
        const std::uint64_t value = m_bits >> (64 - width);
        skip(width);
        return value;
    }

    /// Bits that have been moved over since the start of the stream.
    std::uint64_t consumed() const { return (m_before + m_position) * 8 - m_count; }

    /// Bytes that have not been loaded.
    BlockBytes left() const { return BlockBytes({m_bytes + m_position, m_size - m_position}); }

    /// Goes on in `bytes`, which begin with what is left and belong to the caller.
    void continueIn(std::span<const unsigned char> bytes) {
        m_before += m_position;
        m_bytes = bytes.data();
        m_size = bytes.size();
        m_position = 0;
    }

private:
    const unsigned char* m_bytes;
    std::size_t m_size;
    std::size_t m_position = 0;
    std::uint64_t m_before = 0;  // bytes of the stream before m_bytes
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};

}  // namespace kvan::compression
