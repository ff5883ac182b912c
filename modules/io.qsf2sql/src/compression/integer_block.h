#pragma once

#include "compression/bit_window.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace kvan::compression {

/// Magic and element count ahead of the stream of a block of integers.
inline constexpr std::size_t g_compressionOffset = 8;

/// Elements that an array can have: its size in bytes is a 32-bit field of the native files.
inline constexpr std::uint32_t g_maximumElements = std::numeric_limits<std::uint32_t>::max() / sizeof(std::uint32_t);

inline constexpr char g_tooShort[] = "!(bytesInSource >= g_compressionOffset)";
inline constexpr char g_wrongCount[] = "!(originalSize == *integerInDestination)";

inline std::uint32_t elementCountOf(const std::vector<unsigned char>& block) {
    return loadLittleEndian32(block.data() + 4);
}

/// Makes room for any block of `count` elements and writes its head.
inline void beginBlock(std::vector<unsigned char>& block, std::uint32_t magic, std::uint32_t count) {
    block.resize(std::max<std::size_t>(std::size_t{count} * 8 + 8, 4096));
    std::memcpy(block.data(), &magic, sizeof magic);
    std::memcpy(block.data() + 4, &count, sizeof count);
}

}  // namespace kvan::compression
