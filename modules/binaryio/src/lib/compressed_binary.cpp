#include <binaryio/binary_failure.h>
#include <binaryio/compressed_binary.h>

#include <algorithm>
#include <array>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <cstring>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include <zlib.h>

// zlib between a stream and another one. zlib counts in 32 bits, so buffers are at most that large and longer pieces
// are handed over in parts. Data of at least a buffer goes through without a copy. Decompression looks ahead by one
// buffer, from the construction on, so that `isAtEnd` needs no try; a source that ends within the zlib stream ends the
// data there, without a failure, because a cut file still has the part before the cut. Damage throws. The destructor of
// the writer finishes the stream and swallows what fails in that: who wants to know calls `close`.
namespace kvan::binaryio {

namespace {

std::size_t checkedBufferSize(std::uint64_t size) {
    return std::max(boost::numeric_cast<std::uint32_t>(size), std::uint32_t{1});
}

[[noreturn]] void throwZlibFailure(std::string text, const z_stream& stream) {
    if (stream.msg)
        text.append(": ").append(stream.msg);
    BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::Unspecified, text));
}

// No memory is never taken for bad data.
void checkInitialized(int result, const z_stream& stream) {
    if (result == Z_MEM_ERROR)
        BOOST_THROW_EXCEPTION(std::bad_alloc());
    if (result != Z_OK)
        throwZlibFailure("Unknown error during ZLib initialization", stream);
}

/// zlib counts in 32 bits and takes its input without const.
void setInput(z_stream& stream, const unsigned char* bytes, std::size_t size) {
    stream.next_in = const_cast<unsigned char*>(bytes);
    stream.avail_in = static_cast<uInt>(size);
}

}  // namespace

class OCompressBinary::Impl {
public:
    Impl(OCompressBinary& owner, OBinaryBase& sink, int level, std::uint64_t bufferSize)
        : m_owner(owner), m_sink(&sink), m_input(checkedBufferSize(bufferSize)), m_output(m_input.size()) {
        const int result = deflateInit(&m_stream, level);
        if (result == Z_STREAM_ERROR)
            throwZlibFailure("Invalid compression level provided", m_stream);
        checkInitialized(result, m_stream);
        m_owner.setFlags(sink.getFlags());
    }

    ~Impl() {
        if (m_state != Closed) {
            try {
                finalFlush();
            } catch (...) {  // a destructor has nobody to tell
            }
        }
        deflateEnd(&m_stream);
    }

    void write(const unsigned char* source, std::uint64_t bytes) {
        verifyOpen();
        while (bytes > 0) {
            // Nothing waits before it, so it may go as it is.
            if (m_buffered == 0 && bytes >= m_input.size()) {
                const std::uint64_t piece = std::min<std::uint64_t>(bytes, std::numeric_limits<uInt>::max());
                softFlush(source, piece);
                source += piece;
                bytes -= piece;
                continue;
            }
            const std::size_t taken = std::min<std::uint64_t>(bytes, m_input.size() - m_buffered);
            std::memcpy(m_input.data() + m_buffered, source, taken);
            m_buffered += taken;
            source += taken;
            bytes -= taken;
            if (m_buffered == m_input.size())
                flushBuffered();
        }
    }

    void close() {
        verifyOpen();
        finalFlush();
    }

private:
    enum State { Open = 0, Finishing = 1, Closed = 2 };

    void verifyOpen() const {
        if (m_state != Open)
            BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::InvalidOperation));
    }

    void flushBuffered() { softFlush(m_input.data(), std::exchange(m_buffered, 0)); }

    int deflateOnce(int mode) {
        m_stream.next_out = m_output.data();
        m_stream.avail_out = static_cast<uInt>(m_output.size());
        const int result = deflate(&m_stream, mode);
        m_sink->write(m_output.data(), m_output.size() - m_stream.avail_out);
        return result;
    }

    void softFlush(const unsigned char* data, std::size_t size) {
        setInput(m_stream, data, size);
        while (m_stream.avail_in > 0)
            if (deflateOnce(Z_NO_FLUSH) != Z_OK)
                throwZlibFailure("An error occurred during zlib deflation", m_stream);
    }

    void finalFlush() {
        // From here on a write is refused, also when the end fails halfway.
        m_state = Finishing;
        flushBuffered();
        // Each turn fills a buffer at most; the last one says so.
        for (int result = Z_OK; result != Z_STREAM_END;) {
            result = deflateOnce(Z_FINISH);
            if (result < Z_OK || result > Z_STREAM_END)
                throwZlibFailure("An error occurred during zlib finishing deflation", m_stream);
        }
        m_state = Closed;
        // The flags belong to the inner stream; whoever goes on with it finds what was set on the way.
        m_sink->setFlags(m_owner.getFlags());
        m_sink = nullptr;
    }

    OCompressBinary& m_owner;
    OBinaryBase* m_sink;
    std::vector<unsigned char> m_input;
    std::vector<unsigned char> m_output;
    std::size_t m_buffered = 0;
    State m_state = Open;
    z_stream m_stream{};
};

OCompressBinary::OCompressBinary(OBinaryBase& sink, int level, std::uint64_t bufferSize)
    : m_impl(std::make_unique<Impl>(*this, sink, level, bufferSize)) {}

OCompressBinary::~OCompressBinary() = default;

void OCompressBinary::write(const unsigned char* source, std::uint64_t bytes) {
    m_impl->write(source, bytes);
}

void OCompressBinary::close() {
    m_impl->close();
}

/// Decompresses a buffer's worth at a time, straight into the memory of the caller where that has room for it. A zlib
/// stream is thus always cut at the same places, whatever the sizes asked for.
class IDecompressBinary::Impl {
public:
    Impl(IBinaryBase& source, std::uint64_t bufferSize)
        : m_source(source), m_input(checkedBufferSize(bufferSize)), m_output(m_input.size()) {
        checkInitialized(inflateInit(&m_stream), m_stream);
    }
    ~Impl() { inflateEnd(&m_stream); }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    IBinaryBase& source() const { return m_source; }

    void readAhead() { m_filled = zLibInflation(m_output.data()); }

    std::uint64_t read(unsigned char* destination, std::uint64_t bytes) {
        std::uint64_t done = 0;
        while (done < bytes) {
            if (m_drained < m_filled) {
                const std::size_t taken = std::min<std::uint64_t>(bytes - done, m_filled - m_drained);
                std::memcpy(destination + done, m_output.data() + m_drained, taken);
                m_drained += taken;
                done += taken;
                continue;
            }
            // Straight into the caller's memory where a whole buffer fits.
            const bool isDirect = bytes - done >= m_output.size();
            const std::size_t inflated = zLibInflation(isDirect ? destination + done : m_output.data());
            if (inflated == 0)
                break;
            if (isDirect) {
                done += inflated;
            } else {
                m_drained = 0;
                m_filled = inflated;
            }
        }
        return done;
    }

    bool isAtEnd() const { return (m_isExhausted || m_isEnded) && m_drained == m_filled; }

private:
    /// Fills one buffer at `destination`; gives the bytes in it, fewer only at the end.
    std::size_t zLibInflation(unsigned char* destination) {
        m_stream.next_out = destination;
        m_stream.avail_out = static_cast<uInt>(m_output.size());
        while (!m_isEnded && m_stream.avail_out > 0) {
            // Asked only when a source may still have something: a stream that waits for more would otherwise wait for
            // ever.
            if (m_stream.avail_in == 0 && !m_isExhausted)
                fetch();
            if (m_stream.avail_in == 0)
                break;
            const int result = inflate(&m_stream, Z_NO_FLUSH);
            if (result != Z_OK && result != Z_STREAM_END)
                throwZlibFailure("An error occurred during zlib inflation", m_stream);
            m_isEnded = result == Z_STREAM_END;
        }
        return m_output.size() - m_stream.avail_out;
    }

    void fetch() {
        const std::uint64_t fetched = m_source.readSome(m_input.data(), m_input.size());
        // A short fetch is the end of the source, by the contract of `readSome`.
        m_isExhausted = fetched < m_input.size();
        setInput(m_stream, m_input.data(), fetched);
    }

    IBinaryBase& m_source;
    std::vector<unsigned char> m_input;
    std::vector<unsigned char> m_output;
    std::size_t m_drained = 0;  // of the bytes in m_output
    std::size_t m_filled = 0;
    bool m_isExhausted = false;  // the source
    bool m_isEnded = false;      // the zlib stream
    z_stream m_stream{};
};

IDecompressBinary::IDecompressBinary(IBinaryBase& source, std::uint64_t bufferSize)
    : m_impl(std::make_unique<Impl>(source, bufferSize)) {
    setFlags(source.getFlags());
    m_impl->readAhead();
}

IDecompressBinary::~IDecompressBinary() {
    m_impl->source().setFlags(getFlags());
}

void IDecompressBinary::doRead(unsigned char* destination, std::uint64_t bytes) {
    if (m_impl->read(destination, bytes) < bytes)
        BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::PositionOutOfBounds, "Read position"));
}

std::uint64_t IDecompressBinary::readSome(unsigned char* destination, std::uint64_t bytes) {
    return m_impl->read(destination, bytes);
}

void IDecompressBinary::skip(std::uint64_t bytes) {
    // Skips of a few bytes are common and need no memory of their own.
    std::array<unsigned char, 256> small;
    std::vector<unsigned char> large(bytes > small.size() ? std::min<std::uint64_t>(bytes, 0x10000) : 0);
    unsigned char* const scratch = large.empty() ? small.data() : large.data();
    const std::uint64_t piece = large.empty() ? small.size() : large.size();
    while (bytes > 0) {
        const std::uint64_t passed = m_impl->read(scratch, std::min(bytes, piece));
        if (passed == 0)
            break;
        bytes -= passed;
    }
}

bool IDecompressBinary::isAtEnd() {
    return m_impl->isAtEnd();
}

}  // namespace kvan::binaryio
