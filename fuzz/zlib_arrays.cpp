// Any bytes decode to what a bare inflate makes of them, or fail where that fails. A cut stream may end a match
// earlier.

#include "compression/CompressorZLib.h"

#include <cstdlib>
#include <cstring>
#include <exception>

#include <zlib.h>

namespace {

// A buffer that is full when the input ends hides what zlib holds in its register: codes of a bit each, at the most.
constexpr std::size_t g_hiddenBytes = 64 * 258;
constexpr std::size_t g_mostExpansion = 1040;

enum class Ending { Whole, Cut, Damaged };

/// Inflates into `plain`, which has room for anything that the bytes can hold.
Ending bareInflate(const std::uint8_t* data, std::size_t size, std::vector<unsigned char>& plain,
                   std::size_t& plainSize) {
    z_stream stream{};
    inflateInit(&stream);
    stream.next_in = const_cast<Bytef*>(data);
    stream.avail_in = static_cast<uInt>(size);
    stream.next_out = plain.data();
    stream.avail_out = static_cast<uInt>(plain.size());
    const int result = inflate(&stream, Z_NO_FLUSH);
    plainSize = stream.total_out;
    inflateEnd(&stream);
    return result == Z_STREAM_END ? Ending::Whole : result == Z_OK ? Ending::Cut : Ending::Damaged;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t largest = 4096;
    static std::vector<unsigned char> s_plain(largest * g_mostExpansion);
    static kvan::compression::CompressZLibImpl s_coder;  // its memory goes from stream to stream
    if (size == 0 || size > largest)
        return 0;
    std::size_t plainSize = 0;
    const Ending ending = bareInflate(data, size, s_plain, plainSize);
    std::vector<float> elements;
    try {
        s_coder.Decompress({data, data + size}, elements);
    } catch (const std::exception&) {
        if (ending != Ending::Damaged)
            std::abort();
        return 0;
    }
    const std::size_t missing = plainSize / 4 - elements.size();
    if (ending == Ending::Damaged || missing > (ending == Ending::Whole ? 0 : g_hiddenBytes / 4))
        std::abort();
    if (!elements.empty() && std::memcmp(elements.data(), s_plain.data(), elements.size() * 4) != 0)
        std::abort();
    return 0;
}
