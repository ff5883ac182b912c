#include <binaryio/binary_failure.h>
#include <binaryio/heap_binary.h>

#include <algorithm>
#include <boost/format.hpp>
#include <boost/throw_exception.hpp>
#include <cstring>
#include <locale>

// Streams over memory. The read position never leaves 0 to the size, so the bytes that are left are a difference that
// cannot be negative, and every request is compared with it instead of a sum with the end, which a claim of 64 bits
// could make wrap. A request that fails moves nothing.
namespace kvan::binaryio {

namespace {

/// The position that `offset` names. Compares distances, so that no sum leaves 64 bits.
std::uint64_t movedPosition(std::uint64_t position, std::uint64_t size, origin::type from, std::int64_t offset,
                            const char* failure) {
    std::uint64_t base = position;
    bool backwards = offset < 0;
    // In unsigned numbers, where also the lowest offset has its distance.
    const std::uint64_t distance =
        backwards ? 0 - static_cast<std::uint64_t>(offset) : static_cast<std::uint64_t>(offset);
    switch (from) {
        case origin::Begin:
            base = 0;
            break;
        case origin::Current:
            break;
        case origin::End:
            // Offsets from the end count backwards: a positive one lies before it.
            base = size;
            backwards = !backwards;
            break;
        default:  // any other origin leaves the position as it is
            return position;
    }
    if (distance > (backwards ? base : size - base))
        BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::PositionOutOfBounds, failure));
    return backwards ? base - distance : base + distance;
}

}  // namespace

void IHeapBinary::doRead(unsigned char* destination, std::uint64_t bytes) {
    requireAvailable(bytes);
    readSome(destination, bytes);
}

std::uint64_t IHeapBinary::readSome(unsigned char* destination, std::uint64_t bytes) {
    const std::uint64_t given = std::min(bytes, m_size - m_position);
    // Without bytes both pointers may be null, which memcpy does not allow.
    if (given > 0)
        std::memcpy(destination, m_start + m_position, given);
    m_position += given;
    return given;
}

void IHeapBinary::skip(std::uint64_t bytes) {
    m_position += std::min(bytes, m_size - m_position);
}

void IHeapBinary::requireAvailable(std::uint64_t bytes) const {
    if (bytes > m_size - m_position) {
        const boost::format text =
            boost::format("Trying to read %1% bytes from buffer of size %2% at offset %3%", std::locale::classic()) %
            bytes % m_size % m_position;
        BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::PositionOutOfBounds, text.str()));
    }
}

void IHeapBinary::doSetReadPos(origin::type from, std::int64_t offset) {
    m_position = movedPosition(m_position, m_size, from, offset, "Read position");
}

void OHeapBinary::write(const unsigned char* source, std::uint64_t bytes) {
    if (bytes == 0)
        return;
    if (bytes > m_bytes.size() - m_position)
        m_bytes.resize(m_position + bytes);
    std::memcpy(m_bytes.data() + m_position, source, bytes);
    m_position += bytes;
}

void OHeapBinary::doSetWritePos(origin::type from, std::int64_t offset) {
    m_position = movedPosition(m_position, m_bytes.size(), from, offset, "Write position");
}

void OHeapBinary::clear() {
    // A clear() of the vector would keep its memory.
    std::vector<unsigned char>().swap(m_bytes);
    m_position = 0;
}

}  // namespace kvan::binaryio
