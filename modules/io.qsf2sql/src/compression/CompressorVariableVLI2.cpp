#include "compression/CompressorVariableVLI2.h"

#include "compression/bit_writer.h"
#include "compression/difference_decoder.h"
#include "compression/integer_block.h"
#include "compression/special_zero_table.h"

#include <boost/numeric/conversion/cast.hpp>
#include <utility>

// Comes in: a block of the format in the header, whose table of code lengths every writer has filled alike. Reading
// takes its codes from the table that is built in, through the decoder that both integer coders share; `takeToken` here
// has what is no short code: raw differences, runs of zeros, the end.
//
// A run of four billion zeros takes 42 bits, so a count can be right in a block of any size. Memory is taken for one
// element a bit at first, and beyond that only for runs that were really met. All faults of a stream are one text; what
// the destination holds after one is of no use to anybody.
namespace kvan::compression {

namespace {

using Table = SpecialZeroTable;

constexpr std::uint32_t g_magicNumber = 0xEE77;
constexpr std::size_t g_surplusBytes = 3;  // after the last word of each block that is written

/// For each class of short codes: the bits of the whole code, one byte a class.
constexpr std::uint64_t packedWidths() {
    std::uint64_t widths = 1;
    for (unsigned index = 1; index < Table::g_rawClass; ++index)
        widths |= (std::uint64_t{Table::g_codeLengths[index]} + Table::g_bitLengths[index] + 1) << (8 * index);
    return widths;
}

/// The difference of each short code: the one bit of the prefix over magnitude - base over the sign. Class 0 reads as a
/// code of one bit.
constexpr auto differencesOfCodes() {
    std::array<std::int16_t, 4u << Table::g_bitLengths[Table::g_rawClass - 1]> differences{};
    for (unsigned index = 1; index < Table::g_rawClass; ++index) {
        for (unsigned value = 0; value < 1u << Table::g_bitLengths[index]; ++value) {
            const auto magnitude = static_cast<std::int16_t>(g_specialZeroTable.base[index] + value);
            const std::size_t code = ((1u << Table::g_bitLengths[index]) + value) * 2;
            differences[code] = magnitude;
            differences[code + 1] = static_cast<std::int16_t>(-magnitude);
        }
    }
    return differences;
}

struct Vli2Code {
    static constexpr std::uint64_t g_widths = packedWidths();
    static constexpr auto g_differences = differencesOfCodes();

    /// Three codes of 20 bits would not fit into a refill, so the last class is short for the first of three only.
    static constexpr std::uint64_t g_rareBelow[] = {1ull << 56, 1ull << 57, 1ull << 57};

    static constexpr unsigned g_leastWidth = 0;
    static std::uint64_t widthAfter(unsigned zeros) { return g_widths >> (8 * zeros); }

    [[gnu::always_inline]] Rest takeToken(DecoderCursor& at) const {
        const auto codeLength = static_cast<unsigned>(std::countl_zero(at.window.look())) + 1;
        if (codeLength == Table::g_codeLengths[Table::g_rawClass]) {
            if (at.next == at.end)
                return Rest::Full;
            at.window.skip(Table::g_codeLengths[Table::g_rawClass]);
            at.value += static_cast<std::uint32_t>(at.window.take(32));
            *at.next++ = at.value;
            return Rest::None;
        }
        // Tolerated: a run of no zeros. One that does not fit is left to the caller, who may make room for it.
        if (codeLength == Table::g_zeroRunCodeLength) {
            at.window.skip(Table::g_zeroRunCodeLength);
            at.zeroRun = static_cast<std::uint32_t>(at.window.take(32));
            if (at.zeroRun > static_cast<std::size_t>(at.end - at.next))
                return Rest::Full;
            at.next = std::fill_n(at.next, at.zeroRun, at.value);
            at.zeroRun = 0;
            return Rest::None;
        }
        return codeLength == Table::g_endCodeLength ? Rest::End : Rest::Damaged;
    }
};

void writeTable(BitWriter& stream) {
    stream.put(Table::g_headerLength, 32);
    for (const unsigned length : Table::g_bitLengths)
        stream.put(length, 8);
    for (const unsigned length : Table::g_codeLengths)
        stream.put(length, 8);
    stream.put(Table::g_specialZeroFlag, 32);
    stream.put(Table::g_zeroRunCodeLength, 32);
}

/// A zero alone is one bit, a run 42 whatever its length.
void writeZeros(BitWriter& stream, std::uint32_t count) {
    if (count >= Table::g_zeroRunCodeLength + 32) {
        stream.put(1, Table::g_zeroRunCodeLength);
        stream.put(count, 32);
        return;
    }
    for (; count > 0; --count)
        stream.put(1, 1);
}

/// The least 32-bit difference has no magnitude that is a signed number: it wraps to itself, and goes out raw like all
/// large ones.
void writeDifference(BitWriter& stream, std::uint32_t difference) {
    const std::uint32_t sign = difference >> 31;
    const std::uint32_t magnitude = (difference ^ -sign) + sign;
    unsigned index = 1;
    while (index < Table::g_rawClass && magnitude >= g_specialZeroTable.upperBound[index])
        ++index;
    stream.put(1, Table::g_codeLengths[index]);
    if (index == Table::g_rawClass)
        stream.put(difference, 32);
    else
        stream.put((magnitude - g_specialZeroTable.base[index]) << 1 | sign, Table::g_bitLengths[index] + 1u);
}

/// Decodes `stream` into `destination`; false if it does not hold `count` elements. A run can be much longer than its
/// code, so the array grows beyond one element a bit only by runs that were read.
template <class T>
bool decodeStream(std::span<const unsigned char> stream, std::uint32_t count, std::vector<T>& destination) {
    const std::size_t mostSingles = stream.size() * 8;
    destination.resize(std::min<std::size_t>(count, std::max(destination.capacity(), mostSingles)));
    DifferenceDecoder<Vli2Code> decoder(Vli2Code{}, stream.data(), stream.size());
    DecoderCursor& cursor = decoder.cursor();
    std::size_t produced = 0;
    for (;;) {
        std::uint32_t* const elements = bitsOf(destination.data());
        cursor.next = elements + produced;
        cursor.end = elements + destination.size();
        const Rest rest = decoder.run();
        produced = static_cast<std::size_t>(cursor.next - elements);
        // Tolerated: bytes after the end code; writers leave some, see `g_surplusBytes`.
        if (rest == Rest::End)
            return produced == count;
        if (rest != Rest::Full || produced == count || cursor.zeroRun > count - produced)
            return false;
        destination.resize(std::min<std::size_t>(count, produced + cursor.zeroRun + mostSingles));
        std::fill_n(destination.data() + produced, cursor.zeroRun, static_cast<T>(cursor.value));
        produced += std::exchange(cursor.zeroRun, 0u);
    }
}

template <class T>
void DecompressHelper(const std::vector<unsigned char>& source, std::vector<T>& destination) {
    std::optional<IntegerBlock> block = readIntegerBlock(source);
    if (!block)
        BOOST_THROW_EXCEPTION(std::runtime_error(g_tooShort));
    if (block->head.magic != g_magicNumber)
        BOOST_THROW_EXCEPTION(std::runtime_error("!(magic == g_magicNumber)"));
    const std::uint32_t count = block->head.count;
    // Tolerated: a table of any content and length, since it is stepped over. Only its length is held against the
    // block.
    std::array<unsigned char, 4> tableBytes{};
    if (count > g_maximumElements || !block->rest.take(tableBytes) ||
        !block->rest.skip(loadBigEndian32(tableBytes.data())) || block->rest.left().empty() ||
        !decodeStream(block->rest.left(), count, destination))
        BOOST_THROW_EXCEPTION(std::runtime_error(g_wrongCount));
}

}  // namespace

void CompressVariableVLI2Impl::compressArray(const std::uint32_t* source, unsigned count, unsigned char** destination,
                                             unsigned* destinationBytes) {
    beginBlock(m_output, {g_magicNumber, count});
    BitWriter stream(m_output, g_compressionOffset);
    writeTable(stream);
    std::uint32_t zeros = 0;
    for (unsigned index = 0; index < count; ++index) {
        const std::uint32_t difference = source[index] - (index > 0 ? source[index - 1] : 0);
        if (difference == 0) {
            ++zeros;
            continue;
        }
        writeZeros(stream, std::exchange(zeros, 0u));
        writeDifference(stream, difference);
    }
    writeZeros(stream, zeros);
    stream.put(1, Table::g_endCodeLength);
    stream.finish();
    const std::uint64_t end = g_compressionOffset + (stream.written() + 31) / 32 * 4;
    std::memset(m_output.data() + end, 0, g_surplusBytes);
    *destinationBytes = boost::numeric_cast<unsigned>(end + g_surplusBytes);
    *destination = m_output.data();
}

void CompressVariableVLI2Impl::compressArray(const std::int32_t* source, unsigned count, unsigned char** destination,
                                             unsigned* destinationBytes) {
    compressArray(bitsOf(source), count, destination, destinationBytes);
}

void CompressVariableVLI2Impl::decompressArray(const std::vector<unsigned char>& source,
                                               std::vector<std::uint32_t>& destination) {
    DecompressHelper(source, destination);
}

void CompressVariableVLI2Impl::decompressArray(const std::vector<unsigned char>& source,
                                               std::vector<std::int32_t>& destination) {
    DecompressHelper(source, destination);
}

}  // namespace kvan::compression
