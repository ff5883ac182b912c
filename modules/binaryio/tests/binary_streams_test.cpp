#include <binaryio/binary_failure.h>
#include <binaryio/compressed_binary.h>
#include <binaryio/heap_binary.h>
#include <test-support/support.h>

#include <boost/numeric/conversion/cast.hpp>

namespace kvan::binaryio {
namespace {

using test::Bytes;
using test::failureOf;

Bytes written(OHeapBinary& heap) {
    return {heap.data(), heap.data() + heap.size()};
}

TEST(HeapBinary, ReadsWithinItsBytesOnly) {
    const Bytes bytes{1, 0, 2, 0, 0, 0, 0, 0, 0x80, 0x3F, 7};
    IHeapBinary stream(bytes.data(), bytes.size());
    std::uint16_t first = 0;
    std::int32_t second = 0;
    float third = 0;
    bool fourth = false;
    stream >> first >> second >> third;
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(third, 1.0F);
    EXPECT_EQ(failureOf([&] { stream >> second; }),
              "Trying to read 4 bytes from buffer of size 11 at offset 10: Binary position out of bounds");
    stream >> fourth;
    EXPECT_TRUE(fourth);
    EXPECT_TRUE(stream.isAtEnd());

    IHeapBinary empty(nullptr, 0);
    EXPECT_TRUE(empty.isAtEnd());
    empty.doRead(nullptr, 0);
    EXPECT_EQ(failureOf([&] { empty >> fourth; }),
              "Trying to read 1 bytes from buffer of size 0 at offset 0: Binary position out of bounds");
}

TEST(HeapBinary, PositionsStayFromNothingToTheSize) {
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t refused = -1;
    const struct {
        int from;
        std::int64_t offset, position;
    } cases[] = {
        {0, 0, 0},  {0, 10, 10},      {0, 11, refused}, {0, -1, refused},    {0, least, refused}, {1, -4, 0},
        {1, 6, 10}, {1, 7, refused},  {1, -5, refused}, {1, most, refused},  {1, least, refused}, {2, 0, 10},
        {2, 10, 0}, {2, 11, refused}, {2, -1, refused}, {2, least, refused}, {2, most, refused},  {3, 99, 4},
    };
    const Bytes bytes(10);
    for (const auto& move : cases) {
        SCOPED_TRACE(testing::Message() << move.from << ' ' << move.offset);
        IHeapBinary input(bytes.data(), bytes.size());
        OHeapBinary output;
        output.write(bytes.data(), bytes.size());
        input.doSetReadPos(origin::Begin, 4);
        output.doSetWritePos(origin::Begin, 4);
        const auto from = static_cast<origin::type>(move.from);
        const bool isRefused = move.position == refused;
        const std::string failure = isRefused ? " position: Binary position out of bounds" : "";
        EXPECT_EQ(failureOf([&] { input.doSetReadPos(from, move.offset); }), (isRefused ? "Read" : "") + failure);
        EXPECT_EQ(failureOf([&] { output.doSetWritePos(from, move.offset); }), (isRefused ? "Write" : "") + failure);
        EXPECT_EQ(input.getReadPos(), isRefused ? 4 : move.position);
        EXPECT_EQ(output.getWritePos(), isRefused ? 4 : move.position);
    }
}

TEST(HeapBinary, OverwritesAndGrows) {
    OHeapBinary stream;
    EXPECT_EQ(stream.data(), nullptr);
    const Bytes bytes{1, 2, 3, 4};
    stream.write(bytes.data(), 4);
    stream.doSetWritePos(origin::End, 1);
    stream.write(bytes.data(), 2);
    EXPECT_EQ(written(stream), (Bytes{1, 2, 3, 1, 2}));
    stream.clear();
    EXPECT_EQ(stream.size(), 0);
    EXPECT_EQ(stream.getWritePos(), 0);
}

TEST(HeapBinary, SkipsToItsEndAtMost) {
    const Bytes bytes(10);
    IHeapBinary stream(bytes.data(), bytes.size());
    stream.skip(3);
    EXPECT_EQ(stream.getReadPos(), 3);
    Bytes read(10);
    EXPECT_EQ(stream.readSome(read.data(), 10), 7u);
    stream.doSetReadPos(origin::Begin, 1);
    stream.skip(~std::uint64_t{0});
    EXPECT_TRUE(stream.isAtEnd());
}

Bytes compressed(const Bytes& plain, int level, std::uint64_t bufferSize, std::size_t piece) {
    OHeapBinary heap;
    {
        OCompressBinary stream(heap, level, bufferSize);
        for (std::size_t at = 0; at < plain.size(); at += piece)
            stream.write(plain.data() + at, std::min(piece, plain.size() - at));
    }
    return written(heap);
}

Bytes counting(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t index = 0; index < size; ++index)
        bytes[index] = static_cast<unsigned char>(index ^ index >> 7);
    return bytes;
}

TEST(CompressedBinary, SurvivesWithAnyBufferAndPiece) {
    const Bytes plain = counting(10'000);
    for (const std::uint64_t bufferSize : {0u, 1u, 7u, 256u, 9'999u, 20'000u}) {
        for (const std::size_t piece : {1u, 100u, 10'000u}) {
            const Bytes block = compressed(plain, 6, bufferSize, piece);
            IHeapBinary heap(block.data(), block.size());
            IDecompressBinary stream(heap, bufferSize);
            Bytes read(plain.size());
            for (std::size_t at = 0; at < read.size(); at += piece)
                stream.doRead(read.data() + at, piece);
            EXPECT_EQ(read, plain) << bufferSize << ' ' << piece;
            EXPECT_EQ(stream.readSome(read.data(), 1), 0u);
            EXPECT_TRUE(stream.isAtEnd());
            EXPECT_EQ(failureOf([&] { stream.doRead(read.data(), 1); }),
                      "Read position: Binary position out of bounds");
        }
    }
}

TEST(CompressedBinary, SkipsWithoutFailingAndEndsWithACutStream) {
    const Bytes plain = counting(200'000);
    const Bytes block = compressed(plain, 6, 0x10000, plain.size());
    for (const std::uint64_t skipped : {0u, 10u, 256u, 70'000u, 199'999u, 200'001u}) {
        IHeapBinary heap(block.data(), block.size());
        IDecompressBinary stream(heap, 0x10000);
        stream.skip(skipped);
        unsigned char byte = 0;
        EXPECT_EQ(stream.readSome(&byte, 1), skipped < plain.size() ? 1u : 0u);
        EXPECT_EQ(byte, skipped < plain.size() ? plain[skipped] : 0);
    }
    IHeapBinary heap(block.data(), block.size() / 2);
    IDecompressBinary cut(heap, 0x10000);
    Bytes read(plain.size());
    const std::uint64_t came = cut.readSome(read.data(), read.size());
    EXPECT_GT(came, plain.size() / 10);
    EXPECT_TRUE(std::equal(read.begin(), read.begin() + static_cast<long>(came), plain.begin()));
}

TEST(CompressedBinary, PassesFlagsOnAndRefusesWhatCannotBe) {
    OHeapBinary heap;
    heap.setFlags(6);
    OCompressBinary stream(heap, 9, 16);
    EXPECT_EQ(stream.getFlags(), 6u);
    stream.setFlags(2);
    stream.close();
    EXPECT_EQ(heap.getFlags(), 2u);
    IHeapBinary source(heap.data(), static_cast<std::uint64_t>(heap.size()));
    source.setFlags(6);
    std::make_unique<IDecompressBinary>(source, 16)->setFlags(3);
    EXPECT_EQ(source.getFlags(), 3u);
    const unsigned char byte = 0;
    EXPECT_EQ(failureOf([&] { stream.write(&byte, 1); }), "Invalid operation");
    EXPECT_EQ(failureOf([&] { OCompressBinary(heap, 10, 16); }),
              "Invalid compression level provided: Unspecified stream error");
    EXPECT_THROW(OCompressBinary(heap, 1, 1ull << 32), boost::numeric::positive_overflow);
}

/// Fails once it has taken `limit` bytes.
class FailingSink final : public OBinaryBase {
public:
    explicit FailingSink(std::uint64_t limit) : m_left(limit) {}
    void write(const unsigned char*, std::uint64_t bytes) override {
        if (bytes > m_left)
            throw BinaryFailure(StreamError::EndOfStream);
        m_left -= bytes;
    }

private:
    std::uint64_t m_left;
};

TEST(CompressedBinary, SinkThatFailsIsReportedByCloseAndSwallowedByTheDestructor) {
    FailingSink sink(5);
    const Bytes plain = counting(500);
    EXPECT_EQ(failureOf([&] {
                  OCompressBinary stream(sink, 0, 64);
                  stream.write(plain.data(), plain.size());
                  stream.close();
              }),
              "End of stream");
    OCompressBinary unclosed(sink, 0, 1'000);
    unclosed.write(plain.data(), plain.size());
}

}  // namespace
}  // namespace kvan::binaryio
