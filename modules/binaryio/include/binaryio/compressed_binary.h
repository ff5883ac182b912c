#pragma once

#include <binaryio/binary_base.h>

#include <memory>

namespace kvan::binaryio {

/// Compresses by zlib on the way to `sink`, which outlives the stream or is let go by `close`.
///
/// The flags are the sink's own: taken over at the start and given back at the end.
class OCompressBinary final : public OBinaryBase {
public:
    /// `level` is zlib's, -1 to 9. Two buffers of `bufferSize` bytes; 0 counts as 1, and more than 32 bits throw
    /// `boost::numeric::positive_overflow`.
    OCompressBinary(OBinaryBase& sink, int level, std::uint64_t bufferSize);
    /// Closes the stream if that has not been done; a failure is lost.
    ~OCompressBinary() override;

    /// Throws `BinaryFailure` "Invalid operation" on a closed stream.
    void write(const unsigned char* source, std::uint64_t bytes) override;

    /// Writes what is left and ends the zlib stream.
    void close();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// Decompresses a zlib stream (RFC 1950) out of `source`, which outlives the stream, and reads ahead in it. The flags
/// go there and back as with `OCompressBinary`.
///
/// Damage fails when the part that holds it is decompressed, that is up to a buffer before the bytes that are asked
/// for. A stream that is cut off ends where its bytes end.
class IDecompressBinary final : public IBinaryBase {
public:
    /// `bufferSize` as for `OCompressBinary`.
    IDecompressBinary(IBinaryBase& source, std::uint64_t bufferSize);
    ~IDecompressBinary() override;

    void doRead(unsigned char* destination, std::uint64_t bytes) override;
    std::uint64_t readSome(unsigned char* destination, std::uint64_t bytes) override;
    /// Past the end is no failure.
    void skip(std::uint64_t bytes) override;
    bool isAtEnd() override;
    /// How much is left shows only when it is decompressed.
    void requireAvailable(std::uint64_t) const override {}

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace kvan::binaryio
