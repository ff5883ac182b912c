#pragma once

#include "compression/bit_window.h"

#include <vector>

namespace kvan::compression {

/// Writes a bit stream, most significant bit first, as whole words of 32 bits stored high byte first.
class BitWriter {
public:
    /// Writes from `position` on; `bytes` is large enough for all that comes and belongs to the caller.
    BitWriter(std::vector<unsigned char>& bytes, std::size_t position) : m_next(bytes.data() + position) {}

    /// Writes the low `width` bits of `value`, 1 to 32, above which it has none.
    void put(std::uint32_t value, unsigned width) {
        m_bits = m_bits << width | value;
        m_pending += width;
        m_written += width;
        if (m_pending >= 32) {
            m_pending -= 32;
            store(static_cast<std::uint32_t>(m_bits >> m_pending));
        }
    }

    /// Fills the last word with zero bits.
    void finish() {
        if (m_pending > 0)
            store(static_cast<std::uint32_t>(m_bits << (32 - m_pending)));
        m_pending = 0;
    }

    /// Bits without the filling.
    std::uint64_t written() const { return m_written; }

private:
    void store(std::uint32_t word) {
        word = __builtin_bswap32(word);
        std::memcpy(m_next, &word, sizeof word);
        m_next += sizeof word;
    }

    unsigned char* m_next;
    std::uint64_t m_bits = 0;
    std::uint64_t m_written = 0;
    unsigned m_pending = 0;
};

}  // namespace kvan::compression
