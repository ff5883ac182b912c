#pragma once

#include "compression/compressor_slots.h"

namespace kvan::compression {

/// Arrays of 32-bit integers as differences of neighbours in a variable-length code made for long runs of zeros. Signed
/// and unsigned arrays have the same blocks, and all arithmetic wraps around in 32 bits.
///
///     0   magic 0xEE77              30  special-zero flag 1, big-endian
///     4   element count             34  code length of a zero run, 10, big-endian
///     8   26, big-endian, the       38  code stream, most significant bit first, padded to a word of 32 bits,
///         length of the table           and three zero bytes after it
///     12  bit lengths of 9 classes
///     21  their code lengths
///
/// A code of length k begins with k - 1 zero bits and a one bit. `base` is the least magnitude of a class; the first
/// element is a difference from zero.
///
///     k        magnitudes     after the prefix
///     1        0              nothing: a single difference of zero
///     2..8     1 to 3824      4, 5, 6, 7, 9, 10, 11 bits of magnitude - base, the sign
///     9        any            32 bits of the difference itself
///     10       0              32 bits: so many differences of zero
///     16                      the end
///
/// The table in a block is skipped, whatever it says. A block whose count is not that of the elements in its stream
/// fails.
class CompressVariableVLI2Impl final : public CompressorSlots<CompressVariableVLI2Impl> {
public:
    static constexpr char g_id[] = "7F88E97F-2038-40ba-8F3A-FCA9A9719569";
    static constexpr char g_name[] = "vli2";
    static constexpr char g_description[] = "Variable VLI2 based compressor";

    template <class T>
    static constexpr bool isSupported() {
        return std::is_same_v<T, std::uint32_t> || std::is_same_v<T, std::int32_t>;
    }
    template <class T>
    static constexpr const char* inputName() {
        return "compression input";
    }

    void compressArray(const std::uint32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    void compressArray(const std::int32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    void decompressArray(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination);
    void decompressArray(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination);

private:
    std::vector<unsigned char> m_output;
};

}  // namespace kvan::compression
