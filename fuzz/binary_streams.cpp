// Any calls on any bytes end in a value or a BinaryFailure, with the position inside the bytes. The first byte chooses
// the stream, each further one of the first half a call; the second half is what is read.

#include <binaryio/binary_failure.h>
#include <binaryio/compressed_binary.h>
#include <binaryio/heap_binary.h>
#include <binaryio/magic_number.h>
#include <binaryio/version_number.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace kvan::binaryio;

void call(IBinaryBase& stream, IHeapBinary& heap, unsigned char code) {
    const auto number = static_cast<std::uint64_t>(code >> 4);
    const std::int64_t offsets[] = {0, 1, -1, 7, -7, 300, INT64_MAX, INT64_MIN};
    switch (code & 15) {
        case 0: {
            std::string text;
            stream >> text;
            break;
        }
        case 1: {
            bool flag = false;
            std::uint16_t small = 0;
            double real = 0;
            stream >> flag >> small >> real;
            break;
        }
        case 2: {
            MagicNumber magic = number > 7 ? MagicNumber("CArray") : MagicNumber();
            stream >> magic;
            break;
        }
        case 3: {
            VersionNumber version;
            stream >> version >> expected_type(number > 7 ? version : VersionNumber(1, 0));
            break;
        }
        case 4: {
            std::vector<unsigned char> bytes(number * 100);
            stream.doRead(bytes.data(), bytes.size());
            break;
        }
        case 5: {
            std::vector<unsigned char> bytes(number * 100);
            if (stream.readSome(bytes.data(), bytes.size()) > bytes.size())
                std::abort();
            break;
        }
        case 6:
            stream.skip(number == 15 ? ~std::uint64_t{0} : number * number * 100);
            break;
        case 7:
            heap.doSetReadPos(static_cast<origin::type>(number / 4), offsets[code >> 4 & 7]);
            break;
        case 8:
            stream.setFlags(static_cast<std::uint32_t>(number));
            break;
        default:
            stream.isAtEnd();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const std::size_t calls = std::min<std::size_t>(size / 2, 16);
    IHeapBinary heap(data + calls, size - calls);
    IBinaryBase* stream = &heap;
    std::unique_ptr<IDecompressBinary> inflating;
    try {
        if (data[0] & 1)
            stream = (inflating = std::make_unique<IDecompressBinary>(heap, data[0] * 8u)).get();
    } catch (const BinaryFailure&) {
        return 0;
    }
    for (std::size_t index = 1; index < calls; ++index) {
        try {
            call(*stream, heap, data[index]);
        } catch (const BinaryFailure&) {  // the next call goes on where this one began
        }
        if (heap.getReadPos() < 0 || heap.getReadPos() > heap.size())
            std::abort();
    }
    return 0;
}
