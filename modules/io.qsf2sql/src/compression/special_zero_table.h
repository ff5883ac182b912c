#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace kvan::compression {

/// The classes of the VLI2 code, known by the number of bits up to and including the first one bit (the code length).
/// All that a stream says about its own table is ignored: this one is built into both sides.
///
/// Class 0 is a single difference of zero. The magnitudes of a class follow on those of the class before, as many as
/// its bit length can tell apart; the last class holds the difference itself.
struct SpecialZeroTable {
    static constexpr unsigned g_classes = 9;
    static constexpr unsigned g_rawClass = g_classes - 1;
    static constexpr std::uint32_t g_specialZeroFlag = 1;
    static constexpr unsigned g_zeroRunCodeLength = 10;
    static constexpr unsigned g_endCodeLength = 16;
    static constexpr std::uint32_t g_headerLength = g_classes * 2 + 8;

    static constexpr std::array<std::uint8_t, g_classes> g_bitLengths = {0, 4, 5, 6, 7, 9, 10, 11, 32};
    static constexpr std::array<std::uint8_t, g_classes> g_codeLengths = {1, 2, 3, 4, 5, 6, 7, 8, 9};

    std::array<std::uint32_t, g_classes> base{};
    std::array<std::uint32_t, g_classes> upperBound{};  // exclusive

    constexpr SpecialZeroTable() {
        upperBound[0] = 1;
        for (unsigned index = 1; index < g_rawClass; ++index) {
            base[index] = upperBound[index - 1];
            upperBound[index] = base[index] + (1u << g_bitLengths[index]);
        }
        upperBound[g_rawClass] = std::numeric_limits<std::uint32_t>::max();
    }
};

inline constexpr SpecialZeroTable g_specialZeroTable;

}  // namespace kvan::compression
