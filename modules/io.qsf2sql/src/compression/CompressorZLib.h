#pragma once

#include <binaryio/heap_binary.h>
#include <compression/icompressor.h>

#include <memory>

namespace kvan::compression {

/// Arrays of 32-bit integers or floats as one zlib stream (RFC 1950) of their bytes, little-endian, with nothing of our
/// own around it. Streams of any level are read; those written here hold the bytes as they are (level 0).
class CompressZLibImpl final : public ICompressor {
public:
    static constexpr char g_id[] = "6BB2E64A-27A0-4575-A66A-4E312C8B9AD7";

    CompressZLibImpl();
    ~CompressZLibImpl() override;

    std::string GetId() const override { return g_id; }
    std::string GetDescription() const override { return "ZLib based compressor"; }
    bool SupportsType(std::uint32_t code) const override;

    void Compress(const double*, unsigned, unsigned char**, unsigned*) override;
    void Compress(const float* source, unsigned count, unsigned char** destination,
                  unsigned* destinationBytes) override;
    void Compress(const std::int64_t*, unsigned, unsigned char**, unsigned*) override;
    void Compress(const std::uint32_t* source, unsigned count, unsigned char** destination,
                  unsigned* destinationBytes) override;
    void Compress(const std::int32_t* source, unsigned count, unsigned char** destination,
                  unsigned* destinationBytes) override;

    void Decompress(const std::vector<unsigned char>&, std::vector<double>&) override;
    /// A stream that is cut off gives the elements that its bytes hold, and bytes that make no whole element are
    /// dropped. Throws `binaryio::BinaryFailure` with zlib's message for a damaged stream.
    void Decompress(const std::vector<unsigned char>& source, std::vector<float>& destination) override;
    void Decompress(const std::vector<unsigned char>&, std::vector<std::int64_t>&) override;
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination) override;
    void Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination) override;

private:
    class Inflater;

    template <class T>
    void CompressHelper(const T* source, unsigned count, unsigned char** destination, unsigned* destinationBytes);
    template <class T>
    void DecompressHelper(const std::vector<unsigned char>& source, std::vector<T>& destination);

    binaryio::OHeapBinary m_output;
    std::unique_ptr<Inflater> m_inflater;
};

}  // namespace kvan::compression
