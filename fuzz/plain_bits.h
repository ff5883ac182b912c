#pragma once

#include <compression/icompressor.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>

namespace fuzz {

using Elements = std::vector<std::uint32_t>;

/// A bit stream, most significant bit first, bit by bit. Beyond its end there are zeros.
class PlainBits {
public:
    PlainBits(const std::uint8_t* bytes, std::size_t size) : m_bytes(bytes), m_size(size) {}

    std::uint32_t take(unsigned width) {
        std::uint32_t value = 0;
        for (; width > 0; --width, ++m_taken) {
            const std::size_t byte = m_taken / 8;
            value = value << 1 | (byte < m_size ? m_bytes[byte] >> (7 - m_taken % 8) & 1u : 0u);
        }
        return value;
    }

    std::size_t taken() const { return m_taken; }

private:
    const std::uint8_t* m_bytes;
    std::size_t m_size;
    std::size_t m_taken = 0;
};

inline std::uint32_t countOf(const std::uint8_t* block) {
    std::uint32_t count;
    std::memcpy(&count, block + 4, sizeof count);
    return count;
}

/// The elements as the compressor decodes them, as signed ones and as unsigned ones; nothing if it refuses.
inline std::optional<Elements> decoded(kvan::compression::ICompressor& coder, const std::uint8_t* data,
                                       std::size_t size) {
    const std::vector<unsigned char> block(data, data + size);
    Elements elements;
    std::vector<std::int32_t> others(7);
    try {
        coder.Decompress(block, elements);
    } catch (const std::exception&) {
        return {};
    }
    coder.Decompress(block, others);
    if (!std::equal(elements.begin(), elements.end(), others.begin(), others.end(),
                    [](std::uint32_t left, std::int32_t right) { return left == static_cast<std::uint32_t>(right); }))
        std::abort();
    return elements;
}

/// What was accepted must be what is expected, and survive a round trip.
inline void compare(kvan::compression::ICompressor& coder, const std::optional<Elements>& found,
                    const std::optional<Elements>& expected) {
    if (found != expected)
        std::abort();
    if (!found || found->empty())
        return;
    unsigned char* bytes = nullptr;
    unsigned size = 0;
    coder.Compress(found->data(), static_cast<unsigned>(found->size()), &bytes, &size);
    if (decoded(coder, bytes, size) != found)
        std::abort();
}

}  // namespace fuzz
