#include <binaryio/binary_base.h>
#include <binaryio/binary_failure.h>
#include <binaryio/magic_number.h>

#include <algorithm>
#include <boost/throw_exception.hpp>

namespace kvan::binaryio {

namespace {

/// A stream that cannot tell how much is left is read piece by piece, so that a false size takes no memory.
std::string readCharacters(IBinaryBase& stream, std::uint64_t count) {
    constexpr std::uint64_t g_piece = 0x10000;
    stream.requireAvailable(count);
    std::string text;
    while (count > 0) {
        const std::uint64_t piece = std::min(count, g_piece);
        text.resize(text.size() + piece);
        stream.doRead(reinterpret_cast<unsigned char*>(text.data() + text.size() - piece), piece);
        count -= piece;
    }
    return text;
}

}  // namespace

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

IBinaryBase& operator>>(IBinaryBase& stream, std::string& text) {
    static const MagicNumber s_cString("CString-ASCII");
    static const MagicNumber s_stdString("std_string_ascii");
    MagicNumber tag;
    stream >> tag;
    std::string read;
    if (tag == s_stdString) {
        if (stream.hasWideContainerSizes())
            BOOST_THROW_EXCEPTION(BinaryFailure(StreamError::Unspecified, "Incompatible container size alignment"));
        read = readCharacters(stream, readContainerSize(stream));
    } else {
        s_cString.assertMagicIs(tag.getValue());
        read = readCharacters(stream, readContainerSize(stream) - 1);
        std::uint8_t terminator = 0;
        stream >> terminator;
    }
    text.swap(read);
    return stream;
}

}  // namespace kvan::binaryio
