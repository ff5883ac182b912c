#pragma once

#include <compression/icompressor.h>

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
class CompressVLCImpl final : public ICompressor {
public:
    static constexpr char g_id[] = "4F1EA0CB-5A6A-43ED-9562-D6D873034577";

    std::string GetId() const override { return g_id; }
    std::string GetDescription() const override { return "DPCM/VLC based compressor"; }
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
    /// Any magic is accepted. Fails if the count is not that of the elements in the stream.
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination) override;
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination) override;

private:
    void compressBlock(std::uint32_t magic, const std::uint32_t* source, unsigned count, unsigned char** destination,
                       unsigned* destinationBytes);
    static void DecompressInt32(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination);
    static void DecompressUInt32(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination);

    std::vector<unsigned char> m_output;
};

}  // namespace kvan::compression
