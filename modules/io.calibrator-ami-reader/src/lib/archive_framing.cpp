#include "archive_framing.h"

#include "UnsupportedVersionError.h"

#include <algorithm>
#include <boost/throw_exception.hpp>

// A record is a tag, mostly a version, and fields in a fixed order without lengths of their own: whoever wants a field
// must have read or stepped over all before it, in the version's layout. So a skip checks like a read, and a version
// that is not known ends the reading, because nothing after it could be found. Little-endian throughout.
namespace kvan::io::ami {

namespace {

void skipExactly(Stream& stream, std::uint64_t count, std::uint64_t elementSize) {
    stream.skip(binaryio::requireElements(stream, count, elementSize));
}

}  // namespace

const Tags& Tags::get() {
    static const Tags s_tags;
    return s_tags;
}

VersionNumber readHead(Stream& stream, const MagicNumber& tag) {
    tag.assertMagicIs(read<std::uint32_t>(stream));
    return read<VersionNumber>(stream);
}

VersionNumber readHead(Stream& stream, const MagicNumber& tag, std::initializer_list<VersionNumber> versions) {
    const VersionNumber version = readHead(stream, tag);
    if (std::find(versions.begin(), versions.end(), version) == versions.end())
        BOOST_THROW_EXCEPTION(UnsupportedVersionError(version));
    return version;
}

std::uint64_t readArrayHead(Stream& stream) {
    Tags::get().array.assertMagicIs(read<std::uint32_t>(stream));
    return binaryio::readContainerSize(stream);
}

Bytes readBytes(Stream& stream) {
    return binaryio::readArray<Bytes>(stream, read<std::uint32_t>(stream));
}

bool isStringTag(const MagicNumber& tag) {
    return tag == Tags::get().cString || tag == Tags::get().stdString;
}

bool isStringNext(Stream& stream) {
    const std::int64_t start = stream.getReadPos();
    // At the very end nothing follows, which is no failure.
    if (stream.size() - start < static_cast<std::int64_t>(sizeof(std::uint32_t)))
        return false;
    const MagicNumber tag(read<std::uint32_t>(stream));
    // A look, not a read: the record's own reader wants to see the tag again.
    stream.doSetReadPos(binaryio::origin::Begin, start);
    return isStringTag(tag);
}

void skipBytes(Stream& stream) {
    skipExactly(stream, read<std::uint32_t>(stream), 1);
}

void skipString(Stream& stream) {
    // Read and dropped: a string has two tags and two ways to count.
    read<std::string>(stream);
}

void skipArray(Stream& stream, std::uint64_t elementSize) {
    skipExactly(stream, readArrayHead(stream), elementSize);
}

void skipDoubleArrays(Stream& stream, int count) {
    for (int array = 0; array < count; ++array)
        skipArray(stream, sizeof(double));
}

}  // namespace kvan::io::ami
