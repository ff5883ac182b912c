#pragma once

#include "compression/compressor_slots.h"

namespace kvan::compression {

/// Arrays of 32-bit integers as differences of neighbours in a fixed variable-length code. Signed and unsigned arrays
/// differ in the block's magic alone, and all arithmetic wraps around in 32 bits.
///
/// A block is the magic (4 bytes, 0xBCA2 unsigned, 0xBCA3 signed), the element count (4 bytes), and, unless that is 0,
/// a bit stream, most significant bit first: the first element raw, one code for each further one, and the end marker.
/// A magnitude is the difference without its sign, `base` the least magnitude of its class.
///
///     class n  magnitudes     code
///     4..10    0 to 2031      n - 4 zero bits, a one bit, n bits of magnitude - base, the sign; base = 2^n - 16
///     raw      any            00000001, 32 bits of the element itself
///     end                     00000000 00000001
///
/// A block is decoded whatever its magic says. One whose count is not that of the elements in its stream fails.
class CompressVLCImpl final : public CompressorSlots<CompressVLCImpl> {
public:
    static constexpr char g_id[] = "4F1EA0CB-5A6A-43ED-9562-D6D873034577";
    static constexpr char g_name[] = "vlc";
    static constexpr char g_description[] = "DPCM/VLC based compressor";

    template <class T>
    static constexpr bool isSupported() {
        return std::is_same_v<T, std::uint32_t> || std::is_same_v<T, std::int32_t>;
    }
    template <class T>
    static constexpr const char* inputName() {
        return std::is_signed_v<T> ? "int32 compression input" : "uint32 compression input";
    }

    void compressArray(const std::uint32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    void compressArray(const std::int32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    void decompressArray(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination);
    void decompressArray(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination);

private:
    void compressBlock(std::uint32_t magic, const std::uint32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    static void DecompressInt32(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination);
    static void DecompressUInt32(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination);

    std::vector<unsigned char> m_output;
};

}  // namespace kvan::compression
