#include "compression/CompressorZLib.h"

#include "compression/integer_block.h"

#include <binaryio/compressed_binary.h>

#include <boost/numeric/conversion/cast.hpp>
#include <new>
#include <optional>

#include <zlib.h>

// Comes in: a zlib stream of nothing but the elements. Its length says nothing about theirs, so the destination is what
// the caller has left there or the size of the stream, and doubles while the stream goes on, up to the 4 GiB that a
// native file can count. Most arrays are as long as the one before and inflate in one step, without a copy.
//
// Tolerated: bytes after the end of the stream; a stream that is cut off; bytes that make no whole element. Damage
// throws zlib's own message.
namespace kvan::compression {

namespace {

constexpr int g_level = 0;
constexpr std::uint64_t g_bufferSize = 0x10000;

}  // namespace

/// Inflates whole streams in place, in one step if the array is not longer than its destination, else by doubling that.
class CompressZLibImpl::Inflater {
public:
    Inflater() {
        if (inflateInit(&m_stream) != Z_OK)
            BOOST_THROW_EXCEPTION(std::bad_alloc());
    }
    ~Inflater() { inflateEnd(&m_stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// Gives the bytes of the array; nothing if `source` does not lead to the end of a zlib stream.
    template <class T>
    std::optional<std::size_t> inflateWhole(const std::vector<unsigned char>& source, std::vector<T>& destination) {
        inflateReset(&m_stream);
        m_stream.next_in = const_cast<unsigned char*>(source.data());
        m_stream.avail_in = boost::numeric_cast<uInt>(source.size());
        for (std::size_t bytes = 0;;) {
            const std::span<unsigned char> room = bytesAfter(destination, bytes);
            m_stream.next_out = room.data();
            m_stream.avail_out = static_cast<uInt>(room.size());
            const int result = inflate(&m_stream, Z_FINISH);
            bytes += room.size() - m_stream.avail_out;
            if (result == Z_STREAM_END)
                return bytes;
            if (result != Z_BUF_ERROR || m_stream.avail_out > 0)
                return {};
            if (destination.size() == g_maximumElements)
                BOOST_THROW_EXCEPTION(std::runtime_error("ZLib compressor: array of more than 4 GiB"));
            destination.resize(std::min<std::size_t>(destination.size() * 2, g_maximumElements));
        }
    }

private:
    z_stream m_stream{};
};

CompressZLibImpl::CompressZLibImpl() : m_inflater(std::make_unique<Inflater>()) {}

CompressZLibImpl::~CompressZLibImpl() = default;

template <class T>
void CompressZLibImpl::compressArray(const T* source, unsigned count, unsigned char** destination,
                                     unsigned* destinationBytes) {
    m_output.clear();
    binaryio::OCompressBinary stream(m_output, g_level, g_bufferSize);
    const std::span<const unsigned char> bytes = bytesOf(source, count);
    stream.write(bytes.data(), bytes.size());
    stream.close();
    *destinationBytes = boost::numeric_cast<unsigned>(m_output.size());
    *destination = m_output.data();
}

// A stream that does not reach its end is read again, a buffer at a time: that gives the elements before the cut, and
// for damage the words of the stream class.
template <class T>
void CompressZLibImpl::decompressArray(const std::vector<unsigned char>& source, std::vector<T>& destination) {
    static_assert(sizeof(T) == 4);
    constexpr std::size_t leastRoom = 64;
    destination.resize(std::max({destination.size(), source.size() / sizeof(T), leastRoom}));
    std::optional<std::size_t> bytes = m_inflater->inflateWhole(source, destination);
    if (!bytes) {
        binaryio::IHeapBinary heap(source.data(), source.size());
        binaryio::IDecompressBinary stream(heap, g_bufferSize);
        const std::span<unsigned char> room = bytesAfter(destination, 0);
        bytes = stream.readSome(room.data(), room.size());
    }
    destination.resize(*bytes / sizeof(T));
}

template void CompressZLibImpl::compressArray(const float*, unsigned, unsigned char**, unsigned*);
template void CompressZLibImpl::compressArray(const std::uint32_t*, unsigned, unsigned char**, unsigned*);
template void CompressZLibImpl::compressArray(const std::int32_t*, unsigned, unsigned char**, unsigned*);
template void CompressZLibImpl::decompressArray(const std::vector<unsigned char>&, std::vector<float>&);
template void CompressZLibImpl::decompressArray(const std::vector<unsigned char>&, std::vector<std::uint32_t>&);
template void CompressZLibImpl::decompressArray(const std::vector<unsigned char>&, std::vector<std::int32_t>&);

}  // namespace kvan::compression
