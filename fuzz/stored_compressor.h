#pragma once

#include <compression/icompressor.h>

#include <cstring>
#include <stdexcept>

namespace native_bytes {

/// Stores integers and floats as they are, so that the road of packed blocks can be walked with bytes that are easily
/// written down. Claims to know the code 77, too.
class StoredCompressor final : public kvan::compression::ICompressor {
public:
    using Source = std::vector<unsigned char>;
    using Out = unsigned char**;

    std::string GetId() const override { return {}; }
    std::string GetDescription() const override { return {}; }
    bool SupportsType(std::uint32_t code) const override { return code == 5 || code == 6 || code == 9 || code == 77; }

    void Compress(const double*, unsigned, Out, unsigned*) override { refuse(); }
    void Compress(const float*, unsigned, Out, unsigned*) override { refuse(); }
    void Compress(const std::int64_t*, unsigned, Out, unsigned*) override { refuse(); }
    void Compress(const std::uint32_t*, unsigned, Out, unsigned*) override { refuse(); }
    void Compress(const std::int32_t*, unsigned, Out, unsigned*) override { refuse(); }
    void Decompress(const Source&, std::vector<double>&) override { refuse(); }
    void Decompress(const Source&, std::vector<std::int64_t>&) override { refuse(); }
    void Decompress(const Source& source, std::vector<float>& elements) override { unpack(source, elements); }
    void Decompress(const Source& source, std::vector<std::uint32_t>& elements) override { unpack(source, elements); }
    void Decompress(const Source& source, std::vector<std::int32_t>& elements) override { unpack(source, elements); }

private:
    [[noreturn]] static void refuse() { throw std::runtime_error("not stored"); }

    template <class T>
    static void unpack(const Source& source, std::vector<T>& elements) {
        if (source.size() % sizeof(T) != 0)
            throw std::runtime_error("not whole");
        elements.resize(source.size() / sizeof(T));
        if (!source.empty())
            std::memcpy(elements.data(), source.data(), source.size());
    }
};

}  // namespace native_bytes
