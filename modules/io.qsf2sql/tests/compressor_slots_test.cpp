#include "compressor_calls.h"

#include <boost/uuid/nil_generator.hpp>

#include <zlib.h>

namespace kvan::compression {
namespace {

constexpr const char* g_ids[] = {"4F1EA0CB-5A6A-43ED-9562-D6D873034577", "7F88E97F-2038-40ba-8F3A-FCA9A9719569",
                                 "6BB2E64A-27A0-4575-A66A-4E312C8B9AD7"};
constexpr const char* g_names[] = {"vlc", "vli2", "ZLib"};

/// What a slot says about no bytes to decompress, and about null to compress.
template <class T>
void expectSlot(std::size_t coder, const std::string& type, bool isSupported, const std::string& badInput) {
    SCOPED_TRACE(g_names[coder] + type);
    const auto subject = compressor(g_ids[coder]);
    const std::string name = g_names[coder];
    std::vector<T> elements;
    EXPECT_EQ(
        failureOf([&] { subject->Decompress({}, elements); }),
        name + " compressor: " + type + " decompression " + (isSupported ? "invalid source data" : "not supported"));
    unsigned size = 0;
    EXPECT_EQ(failureOf([&] { subject->Compress(static_cast<const T*>(nullptr), 0, nullptr, &size); }),
              isSupported ? name + " compressor - invalid " + badInput
                          : name + " compressor: " + type + " compression not supported");
}

TEST(CompressorSlots, SupportWhatTheyDecode) {
    for (std::size_t coder = 0; coder < 3; ++coder) {
        const auto subject = compressor(g_ids[coder]);
        EXPECT_EQ(subject->GetId(), g_ids[coder]);
        for (std::uint32_t code = 0; code < 300; ++code)
            EXPECT_EQ(subject->SupportsType(code), code == 5 || code == 6 || (code == 9 && coder == 2));
        expectSlot<double>(coder, "double", false, "");
        expectSlot<float>(coder, "float", coder == 2, "compression input");
        expectSlot<std::int64_t>(coder, "int64_t", false, "");
        expectSlot<std::uint32_t>(coder, "uint32_t", true,
                                  coder == 0 ? "uint32 compression input" : "compression input");
        expectSlot<std::int32_t>(coder, "int32_t", true, coder == 0 ? "int32 compression input" : "compression input");
    }
    EXPECT_EQ(failureOf([] { getCompressor(boost::uuids::nil_uuid()); }),
              "unknown compressor id: 00000000-0000-0000-0000-000000000000");
}

Bytes deflated(const Bytes& plain, int level) {
    uLongf size = compressBound(plain.size());
    Bytes stream(size);
    compress2(stream.data(), &size, plain.data(), plain.size(), level);
    stream.resize(size);
    return stream;
}

TEST(ZLibCompressor, WritesStoredStreams) {
    const auto coder = compressor(g_ids[2]);
    EXPECT_EQ(packed(*coder, std::vector<float>{}), test::fromHex("7801 01 0000FFFF 00000001"));
    EXPECT_EQ(packed(*coder, std::vector<std::uint32_t>{0x04030201}),
              test::fromHex("7801 01 0400FBFF 01020304 0018000B"));
    EXPECT_EQ(unpacked<float>(*coder, packed(*coder, std::vector<float>{})), std::vector<float>{});
    const float odd = std::bit_cast<float>(0x7F812345u);
    const auto read = unpacked<float>(*coder, packed(*coder, std::vector<float>{odd}));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(read.at(0)), 0x7F812345u);
}

TEST(ZLibCompressor, ReadsStreamsOfAnyLevelAndSize) {
    const auto coder = compressor(g_ids[2]);
    for (const int level : {0, 1, 9}) {
        for (const std::size_t bytes : {4u, 39'999u, 40'000u, 65'536u, 65'540u, 262'147u, 3'000'000u}) {
            Bytes plain(bytes);
            for (std::size_t index = 0; index < bytes; ++index)
                plain[index] = static_cast<unsigned char>(index * index / 256);
            std::vector<std::int32_t> expected(bytes / 4);
            std::memcpy(expected.data(), plain.data(), expected.size() * 4);
            EXPECT_EQ(unpacked<std::int32_t>(*coder, deflated(plain, level)), expected) << level << ' ' << bytes;
        }
    }
    std::vector<std::uint32_t> walk(300'000);
    std::iota(walk.begin(), walk.end(), 1u);
    EXPECT_EQ(unpacked<std::uint32_t>(*coder, packed(*coder, walk)), walk);
}

TEST(ZLibCompressor, EndsWhereACutStreamEndsAndNamesDamage) {
    const auto coder = compressor(g_ids[2]);
    const Bytes whole = packed(*coder, std::vector<std::uint32_t>{1, 2, 3});
    for (std::size_t size = 1; size <= whole.size(); ++size) {
        const auto read =
            unpacked<std::uint32_t>(*coder, Bytes(whole.begin(), whole.begin() + static_cast<long>(size)));
        EXPECT_EQ(read.size(), std::min<std::size_t>(size < 7 ? 0 : (size - 7) / 4, 3)) << size;
    }
    Bytes damaged = whole;
    damaged.back() ^= 1;
    EXPECT_EQ(failureOf([&] { unpacked<std::uint32_t>(*coder, damaged); }),
              "An error occurred during zlib inflation: incorrect data check: Unspecified stream error");
    damaged[0] = 0;
    EXPECT_EQ(failureOf([&] { unpacked<float>(*coder, damaged); }),
              "An error occurred during zlib inflation: incorrect header check: Unspecified stream error");
    EXPECT_EQ(unpacked<std::uint32_t>(*coder, whole), (std::vector<std::uint32_t>{1, 2, 3}));  // nothing is kept
    Bytes longer = whole;
    longer.push_back(7);
    EXPECT_EQ(unpacked<std::uint32_t>(*coder, longer).size(), 3u);
}

}  // namespace
}  // namespace kvan::compression
