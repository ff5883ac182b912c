#include "native/block_file.h"

#include <sysutils/platform.h>

#include <algorithm>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/throw_exception.hpp>
#include <cstring>
#include <stdexcept>

// Blocks are small, a peak list of some kilobytes at most, and a run has millions of them; so they are gathered to
// pieces of 256 KiB. What is larger than that goes out at once, after all that was gathered before. The position counts
// what was given, not what has reached the disk: it is the offset by which the index names the next block. A stream
// that failed stays failed, so a full disk is found at the next flush, at the latest in `finish`.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

namespace {

constexpr std::size_t g_bufferSize = 256 * 1024;

}  // namespace

qsf::RESOURCE_HEADER makeHead(std::uint16_t type, std::uint64_t size) {
    return {boost::numeric_cast<std::uint32_t>(size), type, qsf::g_version};
}

Bytes makeBlock(std::uint16_t type, const Bytes& body) {
    const qsf::RESOURCE_HEADER head = makeHead(type, sizeof(qsf::RESOURCE_HEADER) + body.size());
    Bytes block(head.size);
    std::memcpy(block.data(), &head, sizeof head);
    std::copy(body.begin(), body.end(), block.begin() + sizeof head);
    return block;
}

void append(Bytes& bytes, const void* first, std::size_t size) {
    const auto* const begin = static_cast<const std::uint8_t*>(first);
    bytes.insert(bytes.end(), begin, begin + size);
}

std::uint64_t appendText(Bytes& bytes, const std::string& text) {
    // No text begins at 0, where the record stands that names it; so 0 means none.
    const std::uint64_t offset = text.empty() ? 0 : bytes.size();
    bytes.insert(bytes.end(), text.begin(), text.end());
    return offset;
}

BlockFile::BlockFile(const boost::filesystem::path& path) : m_path(path), m_stream(path, std::ios::binary) {
    if (!m_stream)
        fail();
    m_buffer.reserve(g_bufferSize);
}

void BlockFile::append(const void* bytes, std::size_t size) {
    if (size > g_bufferSize - m_buffer.size())
        flush();
    const auto* const first = static_cast<const char*>(bytes);
    if (size > g_bufferSize)
        m_stream.write(first, boost::numeric_cast<std::streamsize>(size));
    else
        m_buffer.insert(m_buffer.end(), first, first + size);
    m_position += size;
}

void BlockFile::finish() {
    append(makeHead(qsf::RESTYPE_END_OF_FILE, sizeof(qsf::RESOURCE_HEADER)));
    flush();
    m_stream.close();
    if (!m_stream)
        fail();
}

void BlockFile::flush() {
    m_stream.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_buffer.clear();
    if (!m_stream)
        fail();
}

void BlockFile::fail() const {
    BOOST_THROW_EXCEPTION(std::runtime_error("Can't write file: " + sys::pathToUtf8(m_path)));
}

}  // namespace kvan::sample::native
