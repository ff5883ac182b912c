#pragma once

#include "compression/block_bytes.h"

#include <binaryio/packed_record.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <optional>

namespace kvan::compression {

#pragma pack(push, 1)

/// Head of a block of integers; the stream of codes follows.
struct IntegerBlockHead {
    std::uint32_t magic;  //  0  of the coder
    std::uint32_t count;  //  4  elements
};
KVAN_PACKED_RECORD(IntegerBlockHead, 8, (magic, 0), (count, 4));

#pragma pack(pop)

static_assert(std::endian::native == std::endian::little, "heads are read and written by copying their bytes");

inline constexpr std::size_t g_compressionOffset = sizeof(IntegerBlockHead);

/// Elements that an array can have: its size in bytes is a 32-bit field of the native files.
inline constexpr std::uint32_t g_maximumElements = std::numeric_limits<std::uint32_t>::max() / sizeof(std::uint32_t);

inline constexpr char g_tooShort[] = "!(bytesInSource >= g_compressionOffset)";
inline constexpr char g_wrongCount[] = "!(originalSize == *integerInDestination)";

/// A block with its head read; the count in it is a claim still.
struct IntegerBlock {
    IntegerBlockHead head;
    BlockBytes rest;
};

/// Nothing if the bytes are too few for a head.
inline std::optional<IntegerBlock> readIntegerBlock(std::span<const unsigned char> bytes) {
    IntegerBlock block{{}, BlockBytes(bytes)};
    if (!block.rest.take(block.head))
        return std::nullopt;
    return block;
}

/// Elements as the coders take them: signed ones have the same bits.
inline std::uint32_t* bitsOf(std::uint32_t* elements) {
    return elements;
}
inline std::uint32_t* bitsOf(std::int32_t* elements) {
    return reinterpret_cast<std::uint32_t*>(elements);
}
inline const std::uint32_t* bitsOf(const std::int32_t* elements) {
    return reinterpret_cast<const std::uint32_t*>(elements);
}

/// Makes room for any block of `head.count` elements and writes its head.
inline void beginBlock(std::vector<unsigned char>& block, const IntegerBlockHead& head) {
    block.resize(std::max<std::size_t>(std::size_t{head.count} * 8 + 8, 4096));
    std::memcpy(block.data(), &head, sizeof head);
}

}  // namespace kvan::compression
