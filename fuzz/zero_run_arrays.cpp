// Any bytes decode to what a decoder of one bit at a time makes of them, or are refused where that one ends with
// another count or with no end; what was accepted survives a round trip.

#include "compression/CompressorVariableVLI2.h"
#include "plain_bits.h"

namespace {

constexpr unsigned g_bitLengths[] = {0, 0, 4, 5, 6, 7, 9, 10, 11};
constexpr std::uint32_t g_bases[] = {0, 0, 1, 17, 49, 113, 241, 753, 1777};

std::optional<fuzz::Elements> plainDecode(const std::uint8_t* stream, std::size_t size, std::size_t count) {
    fuzz::PlainBits bits(stream, size);
    fuzz::Elements elements;
    std::uint32_t value = 0;
    while (elements.size() <= count) {
        unsigned k = 1;
        while (k <= 16 && bits.take(1) == 0)
            ++k;
        if (k == 16)
            return elements;
        if (k > 10)
            break;
        std::uint32_t repeats = 1;
        if (k == 9)
            value += bits.take(32);
        else if (k == 10)
            repeats = bits.take(32);
        else if (k > 1) {
            const std::uint32_t x = bits.take(g_bitLengths[k] + 1);
            const std::uint32_t magnitude = (x >> 1) + g_bases[k];
            value += x & 1 ? 0u - magnitude : magnitude;
        }
        if (repeats > count + 1024)
            break;
        elements.insert(elements.end(), repeats, value);
    }
    return {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::uint32_t count = size >= 8 ? fuzz::countOf(data) : 0;
    if (count > 1u << 16 && count < 1u << 30)
        return 0;  // large arrays are legal, and too slow to look for faults in
    kvan::compression::CompressVariableVLI2Impl coder;
    std::optional<fuzz::Elements> expected;
    if (size >= 12 && data[0] == 0x77 && data[1] == 0xEE && data[2] == 0 && data[3] == 0 && count < 1u << 30) {
        fuzz::PlainBits head(data + 8, 4);
        const std::size_t table = head.take(32);
        if (table < size - 12)
            expected = plainDecode(data + 12 + table, size - 12 - table, count);
        if (expected && expected->size() != count)
            expected.reset();
    }
    fuzz::compare(coder, fuzz::decoded(coder, data, size), expected);
    return 0;
}
