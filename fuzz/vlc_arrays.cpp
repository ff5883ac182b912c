// Any bytes decode to what a decoder of one bit at a time makes of them, or are refused where that one ends with
// another count; what was accepted survives a round trip.

#include "compression/CompressorVLC.h"
#include "plain_bits.h"

namespace {

/// The format as its reader was first written: words of 32 bits against a budget. Stops after `count` elements.
fuzz::Elements plainDecode(const std::uint8_t* stream, std::size_t size, std::size_t count) {
    fuzz::PlainBits bits(stream, size);
    fuzz::Elements elements;
    const auto budget = static_cast<std::int64_t>(size) * 8;
    std::uint32_t value = 0;
    unsigned n = 4;
    while (budget >= 2 && elements.size() <= count &&
           budget - static_cast<std::int64_t>((bits.taken() + 31) / 32) * 32 >= -32) {
        std::uint32_t x = bits.take(6);
        if (x >= 32) {
            n = 4;
        } else {
            x = x << 2 | bits.take(2);
            if (x >= 2) {
                for (n = 5; x < 64u >> (n - 5);)
                    ++n;
            } else if (x == 1) {
                elements.push_back(value = bits.take(32));
                continue;
            } else {
                x = bits.take(8);
                if (x == 1)
                    break;
                if (x == 0) {
                    elements.push_back(value);
                    continue;
                }
            }
            if (n > 5)
                x = x << (2 * n - 10) | bits.take(2 * n - 10);
        }
        const std::uint32_t magnitude = ((x >> 1) & ((1u << n) - 1)) + (1u << n) - 16;
        value += x & 1 ? 0u - magnitude : magnitude;
        elements.push_back(value);
    }
    return elements;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kvan::compression::CompressVLCImpl coder;
    std::optional<fuzz::Elements> expected;
    if (size >= 8) {
        expected = plainDecode(data + 8, size - 8, fuzz::countOf(data));
        if (expected->size() != fuzz::countOf(data))
            expected.reset();
    }
    fuzz::compare(coder, fuzz::decoded(coder, data, size), expected);
    return 0;
}
