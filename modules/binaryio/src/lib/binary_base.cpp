#include <binaryio/binary_base.h>
#include <binaryio/binary_failure.h>
#include <binaryio/magic_number.h>

#include <boost/throw_exception.hpp>
#include <limits>

// What every stream reads alike. Sizes and counts are claims of the data: they are held against the bytes that are left
// before memory depends on them, and what a stream cannot tell is read in pieces.
namespace kvan::binaryio {

IBinaryBase& operator>>(IBinaryBase& stream, bool& value) {
    std::uint8_t byte = 0;
    stream >> byte;
    value = byte != 0;
    return stream;
}

std::uint64_t readContainerSize(IBinaryBase& stream) {
    if (stream.hasWideContainerSizes()) {
        std::uint64_t size = 0;
        stream >> size;
        return size;
    }
    std::uint32_t size = 0;
    stream >> size;
    return size;
}

std::uint64_t requireElements(const IBinaryBase& stream, std::uint64_t count, std::uint64_t elementSize) {
    // A product beyond 64 bits is far beyond any stream, and so is the count alone.
    const bool overflows = count > std::numeric_limits<std::uint64_t>::max() / elementSize;
    const std::uint64_t bytes = overflows ? count : count * elementSize;
    stream.requireAvailable(bytes);
    return bytes;
}

IBinaryBase& operator>>(IBinaryBase& stream, std::string& text) {
    static const MagicNumber s_cString("CString-ASCII");
    static const MagicNumber s_stdString("std_string_ascii");
    MagicNumber tag;
    stream >> tag;
    std::string read;
    if (tag == s_stdString) {
        // This form counts in 32 bits whatever the stream says, so that a wide stream refuses it.
        if (stream.hasWideContainerSizes())
            BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::Unspecified, "Incompatible container size alignment"));
        read = readArray<std::string>(stream, readContainerSize(stream));
    } else {
        s_cString.assertMagicIs(tag.getValue());
        // The count includes the terminator. A count of 0 wraps to one that no stream can hold and is refused as such.
        read = readArray<std::string>(stream, readContainerSize(stream) - 1);
        std::uint8_t terminator = 0;
        stream >> terminator;
    }
    // Only now, so that the caller's text survives a failure.
    text.swap(read);
    return stream;
}

}  // namespace kvan::binaryio
