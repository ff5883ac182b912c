#include "compression/CompressorZLib.h"

#include "compression/integer_block.h"
#include "compression/unsupported_slot.h"
#include "qsf2sql/qsflib/SpectrumRecords.h"

#include <array>
#include <boost/numeric/conversion/cast.hpp>

namespace kvan::compression {

namespace {

/// A stream that reads a source and leaves it whatever happens.
class OpenedStream {
public:
    OpenedStream(binaryio::IDecompressBinary& stream, binaryio::IBinaryBase& source) : m_stream(stream) {
        try {
            m_stream.open(source);
        } catch (...) {
            m_stream.close();
            throw;
        }
    }
    ~OpenedStream() { m_stream.close(); }
    OpenedStream(const OpenedStream&) = delete;
    OpenedStream& operator=(const OpenedStream&) = delete;

    std::uint64_t readSome(unsigned char* destination, std::uint64_t bytes) {
        return m_stream.readSome(destination, bytes);
    }

private:
    binaryio::IDecompressBinary& m_stream;
};

}  // namespace

bool CompressZLibImpl::SupportsType(std::uint32_t code) const {
    return code == KVAN::io::QSF::ELEMENT_INT32 || code == KVAN::io::QSF::ELEMENT_UINT32 ||
           code == KVAN::io::QSF::ELEMENT_FLOAT32;
}

template <class T>
void CompressZLibImpl::CompressHelper(const T* source, unsigned count, unsigned char** destination,
                                      unsigned* destinationBytes) {
    if (!source || !destination || !destinationBytes)
        BOOST_THROW_EXCEPTION(std::invalid_argument("ZLib compressor - invalid compression input"));
    m_output.clear();
    binaryio::OCompressBinary stream(m_output, g_level, g_bufferSize);
    stream.write(reinterpret_cast<const unsigned char*>(source), std::uint64_t{count} * sizeof(T));
    stream.close();
    *destinationBytes = boost::numeric_cast<unsigned>(m_output.size());
    *destination = m_output.data();
}

/// The array grows from what it was before, or from what the source would hold uncompressed, by doubling.
template <class T>
void CompressZLibImpl::DecompressHelper(const std::vector<unsigned char>& source, std::vector<T>& destination) {
    static_assert(sizeof(T) == 4);
    binaryio::IHeapBinary bytes(source.data(), source.size());
    OpenedStream stream(m_inflating, bytes);
    destination.resize(std::max(destination.size(), source.size() / sizeof(T)));
    std::size_t done = 0;
    for (;;) {
        const std::size_t room = destination.size() * sizeof(T) - done;
        const std::size_t read = stream.readSome(reinterpret_cast<unsigned char*>(destination.data()) + done, room);
        done += read;
        std::array<unsigned char, 64 * sizeof(T)> ahead;
        const std::size_t more = read < room ? 0 : stream.readSome(ahead.data(), ahead.size());
        if (more == 0)
            break;
        if (destination.size() + 64 > g_maximumElements)
            BOOST_THROW_EXCEPTION(std::runtime_error("ZLib compressor: array of more than 4 GiB"));
        destination.resize(std::min<std::size_t>(destination.size() * 2 + 64, g_maximumElements));
        std::memcpy(reinterpret_cast<unsigned char*>(destination.data()) + done, ahead.data(), more);
        done += more;
    }
    destination.resize(done / sizeof(T));
}

void CompressZLibImpl::Compress(const float* source, unsigned count, unsigned char** destination,
                                unsigned* destinationBytes) {
    CompressHelper(source, count, destination, destinationBytes);
}

void CompressZLibImpl::Compress(const std::uint32_t* source, unsigned count, unsigned char** destination,
                                unsigned* destinationBytes) {
    CompressHelper(source, count, destination, destinationBytes);
}

void CompressZLibImpl::Compress(const std::int32_t* source, unsigned count, unsigned char** destination,
                                unsigned* destinationBytes) {
    CompressHelper(source, count, destination, destinationBytes);
}

void CompressZLibImpl::Decompress(const std::vector<unsigned char>& source, std::vector<float>& destination) {
    if (source.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument("ZLib compressor: float decompression invalid source data"));
    DecompressHelper(source, destination);
}

void CompressZLibImpl::Decompress(const std::vector<unsigned char>& source, std::vector<std::uint32_t>& destination) {
    if (source.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument("ZLib compressor: uint32_t decompression invalid source data"));
    DecompressHelper(source, destination);
}

void CompressZLibImpl::Decompress(const std::vector<unsigned char>& source, std::vector<std::int32_t>& destination) {
    if (source.empty())
        BOOST_THROW_EXCEPTION(std::invalid_argument("ZLib compressor: int32_t decompression invalid source data"));
    DecompressHelper(source, destination);
}

void CompressZLibImpl::Compress(const double*, unsigned, unsigned char**, unsigned*) {
    throwUnsupported("ZLib", "double compression");
}

void CompressZLibImpl::Compress(const std::int64_t*, unsigned, unsigned char**, unsigned*) {
    throwUnsupported("ZLib", "int64_t compression");
}

void CompressZLibImpl::Decompress(const std::vector<unsigned char>&, std::vector<double>&) {
    throwUnsupported("ZLib", "double decompression");
}

void CompressZLibImpl::Decompress(const std::vector<unsigned char>&, std::vector<std::int64_t>&) {
    throwUnsupported("ZLib", "int64_t decompression");
}

}  // namespace kvan::compression
