#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvan::compression {

/// An array compressor of the native files, chosen by GUID. Keeps scratch memory between calls, so one object serves
/// one thread at a time.
///
/// A slot whose element type the compressor does not support throws `std::runtime_error` and does nothing else.
class ICompressor {
public:
    virtual ~ICompressor() = default;

    /// The GUID, 36 characters with hyphens; the case of its letters is part of the text.
    virtual std::string GetId() const = 0;
    /// A short text for people.
    virtual std::string GetDescription() const = 0;
    /// Whether vectors of the element type with this code (`KVAN::io::QSF::ElementType`) are decompressed.
    virtual bool SupportsType(std::uint32_t code) const = 0;

    /// Compresses `count` elements at `source`, which is not null; a count of 0 is allowed. `*destination` then points
    /// to `*destinationBytes` bytes that belong to the compressor and stay as they are until its next call.
    virtual void Compress(const double* source, unsigned count, unsigned char** destination,
                          unsigned* destinationBytes) = 0;
    virtual void Compress(const float* source, unsigned count, unsigned char** destination,
                          unsigned* destinationBytes) = 0;
    virtual void Compress(const std::int64_t* source, unsigned count, unsigned char** destination,
                          unsigned* destinationBytes) = 0;
    virtual void Compress(const std::uint32_t* source, unsigned count, unsigned char** destination,
                          unsigned* destinationBytes) = 0;
    virtual void Compress(const std::int32_t* source, unsigned count, unsigned char** destination,
                          unsigned* destinationBytes) = 0;

    /// Decompresses a whole array. `destination` gets exactly its elements; what was in there is lost. Throws
    /// `std::runtime_error` for bytes that are no array of this compressor, `std::invalid_argument` for no bytes at all
    /// where an array needs some.
    virtual void Decompress(const std::vector<unsigned char>& source, std::vector<double>& destination) = 0;
    virtual void Decompress(const std::vector<unsigned char>& source, std::vector<float>& destination) = 0;
    virtual void Decompress(const std::vector<unsigned char>& source, std::vector<std::int64_t>& destination) = 0;
    virtual void Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination) = 0;
    virtual void Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination) = 0;
};

}  // namespace kvan::compression
