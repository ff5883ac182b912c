#pragma once

#include "compression/bit_window.h"

#include <sysutils/vector_clones.h>

#include <array>

namespace kvan::compression {

/// Why a decoder came to rest.
enum class Rest {
    None,     // it goes on
    End,      // the stream is over
    Full,     // the next element or the run of zeros does not fit
    Damaged,  // no code of the format
};

/// A place in a stream of differences and in the array that it becomes.
struct DecoderCursor {
    BitWindow window;
    std::uint32_t* next = nullptr;  // where the next element goes
    std::uint32_t* end = nullptr;   // of the room for elements
    std::uint32_t value = 0;        // the element before
    unsigned lastClass = 0;         // leading zeros of the short code before
    std::uint32_t zeroRun = 0;      // differences of zero that are still to be stored
};

/// Decodes differences until the stream or the room for elements ends.
///
/// A `Code` knows its short codes by their leading zeros; from the leading one bit on, each of them is a number of its
/// own, which is looked up in a table of differences. Three of them fit into a refill, so that one round of comparisons
/// serves three elements, and nothing but the rare test branches on the data: noise costs the same as silence. What is
/// not short (raw elements, runs, the end, damage) goes one by one through `Code::takeToken`.
///
///     g_rareBelow        where the register holds less than this, its next token is not short; for each of the three
///     g_leastWidth       bits of the shortest code
///     widthAfter(n)      bits beyond them of a code with n leading zeros, in the low byte
///     g_differences      by the code
///     takeToken(cursor)  takes a token of at most 56 bits that is not short
template <class Code>
class DifferenceDecoder {
public:
    DifferenceDecoder(const Code& code, const unsigned char* stream, std::size_t size)
        : m_code(code), m_cursor{.window = BitWindow(stream, size)} {}

    /// Where `run` goes on. The caller sets its room for elements, and stores a run of zeros that did not fit.
    DecoderCursor& cursor() { return m_cursor; }

    Rest run() { return run(m_code, m_cursor, m_tail); }

private:
    /// Less than 8 bytes of the stream, then zeros; a token and a load never reach the end.
    using Tail = std::array<unsigned char, 48>;

    QSF_VECTOR_CLONES static Rest run(const Code code, DecoderCursor& cursor, Tail& tail) {
        DecoderCursor at = cursor;
        Rest rest = Rest::None;
        while (rest == Rest::None) {
            while (at.window.canRefill() && at.end - at.next >= 3) {
                at.window.refill();
                if (!(takeShort(at, Code::g_rareBelow[0]) && takeShort(at, Code::g_rareBelow[1]) &&
                      takeShort(at, Code::g_rareBelow[2])))
                    break;
            }
            if (!at.window.canRefill()) {
                at.window.left().copyTo(tail);
                at.window.continueIn(tail);
            }
            at.window.refill();
            if (at.window.look() < Code::g_rareBelow[0])
                rest = code.takeToken(at);
            else if (at.next == at.end)
                rest = Rest::Full;
            else
                takeShort(at, 1);
        }
        cursor = at;
        return rest;
    }

    /// False if the next code is below `rareBelow`.
    [[gnu::always_inline]] static bool takeShort(DecoderCursor& at, std::uint64_t rareBelow) {
        const std::uint64_t bits = at.window.look();
        if (bits < rareBelow) [[unlikely]]
            return false;
        const auto zeros = static_cast<unsigned>(std::countl_zero(bits));
        const std::uint64_t width = Code::widthAfter(zeros);
        at.value += static_cast<std::uint32_t>(Code::g_differences[bits >> ((64 - Code::g_leastWidth - width) & 63)]);
        at.lastClass = zeros;
        at.window.skip(Code::g_leastWidth);
        at.window.skipLowByte(width);
        *at.next++ = at.value;
        return true;
    }

    Code m_code;
    DecoderCursor m_cursor;
    Tail m_tail{};
};

}  // namespace kvan::compression
