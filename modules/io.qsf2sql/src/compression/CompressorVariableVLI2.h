#pragma once

#include <compression/icompressor.h>

namespace kvan::compression {

/// Arrays of 32-bit integers as differences of neighbours in a variable-length code made for long runs of zeros. Signed
/// and unsigned arrays have the same blocks, and all arithmetic wraps around in 32 bits.
///
///     0   magic 0xEE77              30  special-zero flag 1, big-endian
///     4   element count             34  code length of a zero run, 10, big-endian
///     8   26, big-endian, the       38  code stream, most significant bit first, padded to a word of 32 bits,
///         length of the table           with three zero bytes behind it
///     12  bit lengths of 9 classes
///     21  their code lengths
///
/// A code of length k begins with k - 1 zero bits and a one bit. `base` is the least magnitude of a class; the first
/// element is a difference from zero.
///
///     k        magnitudes     behind the prefix
///     1        0              nothing: a single difference of zero
///     2..8     1 to 3824      4, 5, 6, 7, 9, 10, 11 bits of magnitude - base, the sign
///     9        any            32 bits of the difference itself
///     10       0              32 bits: so many differences of zero
///     16                      the end
class CompressVariableVLI2Impl final : public ICompressor {
public:
    static constexpr char g_id[] = "7F88E97F-2038-40ba-8F3A-FCA9A9719569";

    std::string GetId() const override { return g_id; }
    std::string GetDescription() const override { return "Variable VLI2 based compressor"; }
    bool SupportsType(std::uint32_t code) const override;

    void Compress(const double*, unsigned, unsigned char**, unsigned*) override;
    void Compress(const float*, unsigned, unsigned char**, unsigned*) override;
    void Compress(const std::int64_t*, unsigned, unsigned char**, unsigned*) override;
    void Compress(const std::uint32_t* source, unsigned count, unsigned char** destination,
                  unsigned* destinationBytes) override;
    void Compress(const std::int32_t* source, unsigned count, unsigned char** destination,
                  unsigned* destinationBytes) override;

    void Decompress(const std::vector<unsigned char>&, std::vector<double>&) override;
    void Decompress(const std::vector<unsigned char>&, std::vector<float>&) override;
    void Decompress(const std::vector<unsigned char>&, std::vector<std::int64_t>&) override;
    /// The table in the block is skipped, whatever it says. Fails if the count is not that of the elements in the
    /// stream.
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination) override;
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination) override;

private:
    void compressBlock(const std::uint32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);

    std::vector<unsigned char> m_output;
};

}  // namespace kvan::compression
