#include "compression/CompressorVLC.h"

#include "compression/bit_writer.h"
#include "compression/difference_decoder.h"
#include "compression/integer_block.h"

#include <boost/numeric/conversion/cast.hpp>

// Comes in: a block of the format in the header. Writing is one pass over the elements, into room for the worst of
// them: 40 bits each and the end marker. Reading is the decoder that both integer coders share, over the table of all
// short codes, and `takeToken` here for what is no short code.
//
// The count is a claim: a token costs 6 bits at least, so a stream bounds its elements, and memory is taken within that
// bound only. Arithmetic is on 32-bit unsigned numbers throughout and wraps; signed elements have the same bits.
//
// All faults of a stream are one text, that of a wrong count: nothing else in a stream can be held against anything.
namespace kvan::compression {

namespace {

constexpr std::uint32_t g_magicUnsigned = 0xBCA2;
constexpr std::uint32_t g_magicSigned = 0xBCA3;

constexpr unsigned g_firstClass = 4;
constexpr std::uint32_t g_magnitudeLimit = 2032;  // the first after the last class

constexpr std::uint32_t baseOf(unsigned classNumber) {
    return (1u << classNumber) - 16;
}

/// The difference of each short code. A code is 1 << n over magnitude - base, that is magnitude + 16, over the sign.
constexpr auto differencesOfCodes() {
    std::array<std::int16_t, 2 * (g_magnitudeLimit + 16)> differences{};
    for (std::int16_t magnitude = 0; magnitude < static_cast<int>(g_magnitudeLimit); ++magnitude) {
        const auto code = static_cast<std::size_t>(magnitude + 16) * 2;
        differences[code] = magnitude;
        differences[code + 1] = static_cast<std::int16_t>(-magnitude);
    }
    return differences;
}

struct VlcCode {
    static constexpr auto g_differences = differencesOfCodes();
    static constexpr std::uint64_t g_rareBelow[] = {1ull << 57, 1ull << 57, 1ull << 57};

    static constexpr unsigned g_leastWidth = 6;
    static std::uint64_t widthAfter(unsigned zeros) { return 2 * zeros; }

    explicit VlcCode(std::size_t streamBytes) : m_bitLimit((streamBytes * 8 + 32) / 32 * 32) {}

    /// Each round of tokens costs this many bits at least, and none begins after the limit.
    std::uint64_t mostElements() const { return m_bitLimit / g_leastWidth + 1; }

    [[gnu::always_inline]] Rest takeToken(DecoderCursor& at) const {
        // Tolerated: no end marker. The stream is one of words of 32 bits, which end up to one word after its last
        // byte, so it goes on with a few elements out of zero bits, and is good if the count fits.
        if (at.window.consumed() > m_bitLimit)
            return Rest::End;
        // All elements are there, so only the end marker may follow.
        if (at.next == at.end)
            return at.window.look() >> 48 == 1 ? Rest::End : Rest::Full;
        if (at.window.take(8) == 1)
            at.value = static_cast<std::uint32_t>(at.window.take(32));
        else if (const auto tail = static_cast<std::uint32_t>(at.window.take(8)); tail == 1)
            return Rest::End;
        else
            at.value += differenceAfterZeros(tail, at);
        *at.next++ = at.value;
        return Rest::None;
    }

private:
    /// Tolerated: eight zero bits that no end marker follows. Zero bits again repeat the element, other bits are a code
    /// of the class before, whatever their leading zeros.
    static std::uint32_t differenceAfterZeros(std::uint32_t bits, DecoderCursor& at) {
        const unsigned classNumber = g_firstClass + at.lastClass;
        if (bits == 0)
            return 0;
        if (classNumber > 5) {
            const unsigned more = 2 * classNumber - 10;
            bits = bits << more | static_cast<std::uint32_t>(at.window.take(more));
        }
        const std::uint32_t magnitude = ((bits >> 1) & ((1u << classNumber) - 1)) + baseOf(classNumber);
        return bits & 1 ? 0 - magnitude : magnitude;
    }

    std::uint64_t m_bitLimit;  // a token begins at this bit or before it
};

/// Gives the text of the failure, or null.
template <class T>
const char* decodeBlock(const std::vector<unsigned char>& source, std::vector<T>& destination) {
    // Tolerated: any magic.
    const std::optional<IntegerBlock> block = readIntegerBlock(source);
    if (!block)
        return g_tooShort;
    const std::uint32_t count = block->head.count;
    const std::span<const unsigned char> stream = block->rest.left();
    if (stream.empty()) {
        destination.clear();
        return count == 0 ? nullptr : g_wrongCount;
    }
    const VlcCode code(stream.size());
    if (count > std::min<std::uint64_t>(code.mostElements(), g_maximumElements))
        return g_wrongCount;
    destination.resize(count);

    // Tolerated: a first element that is no raw one, whose difference counts from 0; bytes after the end marker.
    DifferenceDecoder<VlcCode> decoder(code, stream.data(), stream.size());
    DecoderCursor& cursor = decoder.cursor();
    cursor.next = bitsOf(destination.data());
    cursor.end = cursor.next + count;
    return decoder.run() == Rest::End && cursor.next == cursor.end ? nullptr : g_wrongCount;
}

}  // namespace

void CompressVLCImpl::compressBlock(std::uint32_t magic, const std::uint32_t* source, unsigned count,
                                    unsigned char** destination, unsigned* destinationBytes) {
    beginBlock(m_output, {magic, count});
    BitWriter stream(m_output, g_compressionOffset);
    for (unsigned index = 0; index < count; ++index) {
        const std::uint32_t difference = source[index] - (index > 0 ? source[index - 1] : 0);
        const std::uint32_t sign = difference >> 31;
        const std::uint32_t magnitude = (difference ^ -sign) + sign;
        if (index == 0 || magnitude >= g_magnitudeLimit) {
            stream.put(1, 8);
            stream.put(source[index], 32);
        } else {
            const std::uint32_t code = (magnitude + 16) << 1 | sign;
            stream.put(code, 2 * (static_cast<unsigned>(std::bit_width(magnitude + 16)) - 1) - 2);
        }
    }
    if (count > 0)
        stream.put(1, 16);
    stream.finish();
    *destinationBytes = boost::numeric_cast<unsigned>(g_compressionOffset + (stream.written() + 7) / 8);
    *destination = m_output.data();
}

void CompressVLCImpl::compressArray(const std::uint32_t* source, unsigned count, unsigned char** destination,
                                    unsigned* destinationBytes) {
    compressBlock(g_magicUnsigned, source, count, destination, destinationBytes);
}

void CompressVLCImpl::compressArray(const std::int32_t* source, unsigned count, unsigned char** destination,
                                    unsigned* destinationBytes) {
    compressBlock(g_magicSigned, bitsOf(source), count, destination, destinationBytes);
}

void CompressVLCImpl::decompressArray(const std::vector<unsigned char>& source,
                                      std::vector<std::uint32_t>& destination) {
    DecompressUInt32(source, destination);
}

void CompressVLCImpl::decompressArray(const std::vector<unsigned char>& source,
                                      std::vector<std::int32_t>& destination) {
    DecompressInt32(source, destination);
}

void CompressVLCImpl::DecompressUInt32(const std::vector<unsigned char>& source,
                                       std::vector<std::uint32_t>& destination) {
    if (const char* failure = decodeBlock(source, destination))
        BOOST_THROW_EXCEPTION(std::runtime_error(failure));
}

void CompressVLCImpl::DecompressInt32(const std::vector<unsigned char>& source,
                                      std::vector<std::int32_t>& destination) {
    if (const char* failure = decodeBlock(source, destination))
        BOOST_THROW_EXCEPTION(std::runtime_error(failure));
}

}  // namespace kvan::compression
