#include "compressor_calls.h"

#include <bitset>

namespace kvan::compression {
namespace {

using Elements = std::vector<std::uint32_t>;

constexpr char g_vlc[] = "4f1ea0cb-5a6a-43ed-9562-d6d873034577";
constexpr char g_vli2[] = "7F88e97f-2038-40BA-8f3a-fcA9a9719569";
constexpr char g_wrongCount[] = "!(originalSize == *integerInDestination)";

/// Head of a second coder's block after the count.
const std::string g_table = "0000001A 00040506 07090A0B 20 01020304 05060708 09 00000001 0000000A";

/// A head and a stream written down bit by bit.
Bytes stream(const std::string& head, std::string bits) {
    std::erase(bits, ' ');
    Bytes bytes = test::fromHex(head);
    for (std::size_t at = 0; at < bits.size(); at += 8) {
        std::string byte = bits.substr(at, 8);
        byte.resize(8, '0');
        bytes.push_back(static_cast<unsigned char>(std::bitset<8>(byte).to_ulong()));
    }
    return bytes;
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    while (count-- > 0)
        all += text;
    return all;
}

const std::string g_end = repeated("0", 15) + "1";

TEST(IntegerCompressors, BlocksAreTheseBytes) {
    const std::tuple<const char*, Elements, Bytes> cases[] = {
        {g_vlc, {}, test::fromHex("A2BC0000 00000000")},
        {g_vlc, {7}, test::fromHex("A2BC0000 01000000 0100000007 0001")},
        {g_vlc, {100, 103, 95, 5000}, test::fromHex("A2BC0000 04000000 01000000 649B1010 00013880 0010")},
        {g_vlc,  // the ends of the classes; 2032 and the least number go out raw
         {0, 0, 15, 31, 4294967280, 0x80000000, 2032 + 0x80000000u, 2031 * 2 + 1 + 0x80000000u},
         stream("A2BC0000 08000000", "00000001" + repeated("0", 32) + "100000 111110 01000000" +
                                         "01111111"
                                         "00000001" +
                                         "1" + repeated("0", 31) + "00000001 1" + repeated("0", 20) + "11111110000" +
                                         "0000001 1111111111 0" + repeated("0", 15) + "1")},
        {g_vli2, {}, test::fromHex("77EE0000 00000000" + g_table + "0001 000000")},
        {g_vli2, {100, 103, 103, 95}, test::fromHex("77EE0000 04000000" + g_table + "1CC92BC0 0040 000000")},
    };
    for (const auto& [id, elements, block] : cases) {
        SCOPED_TRACE(elements.size());
        EXPECT_EQ(packed(*compressor(id), elements), block);
        EXPECT_EQ(unpacked<std::uint32_t>(*compressor(id), block), elements);
    }
    EXPECT_EQ(packed(*compressor(g_vlc), std::vector<std::int32_t>{-1}),
              test::fromHex("A3BC0000 01000000 01FFFFFFFF 0001"));
    EXPECT_EQ(packed(*compressor(g_vli2), std::vector<std::int32_t>{-1}),
              test::fromHex("77EE0000 01000000" + g_table + "42000200 0000 000000"));
}

TEST(VariableVli2, ClassesBeginAndEndHere) {
    const std::pair<std::uint32_t, std::string> cases[] = {
        {16, "01 11110"},
        {17, "001 000000"},
        {0u - 48, "001 111111"},
        {49, "0001 0000000"},
        {240, "00001 11111110"},
        {241, "000001 0000000000"},
        {752, "000001 1111111110"},
        {1776, "0000001 11111111110"},
        {3824, "00000001 111111111110"},
        {3825, "000000001" + std::bitset<32>(3825).to_string()},
        {0u - 3825, "000000001" + std::bitset<32>(0u - 3825).to_string()},
        {0x80000000u, "000000001 1" + repeated("0", 31)},
    };
    const auto coder = compressor(g_vli2);
    for (const auto& [difference, bits] : cases) {
        Bytes block = stream("77EE0000 01000000" + g_table, bits + g_end);
        EXPECT_EQ(unpacked<std::uint32_t>(*coder, block), Elements{difference});
        block.resize((block.size() - 8 + 3) / 4 * 4 + 8 + 3);
        EXPECT_EQ(packed(*coder, Elements{difference}), block);
    }
}

TEST(VariableVli2, FortyTwoZerosAreARun) {
    const auto coder = compressor(g_vli2);
    const auto codeBits = [&](std::size_t zeros) {
        const Bytes block = packed(*coder, Elements(zeros, 0));
        EXPECT_EQ(unpacked<std::uint32_t>(*coder, block), Elements(zeros, 0));
        return Bytes(block.begin() + 38, block.end());
    };
    EXPECT_EQ(codeBits(41), test::fromHex("FFFFFFFF FF800080 0000 000000"));
    EXPECT_EQ(codeBits(42), test::fromHex("00400000 0A800040 0000 000000"));
    EXPECT_EQ(codeBits(5'000'000).size(), 13u);
}

// What a stream may hold although no writer makes it.
TEST(IntegerCompressors, OddStreamsDecode) {
    const std::string raw100 = "00000001" + std::bitset<32>(100).to_string();
    const std::string surplus = repeated("0", 400);
    Elements steps;
    for (std::uint32_t step = 1; step <= 5; ++step)
        steps.insert(steps.end(), 1001, step);
    steps.resize(5007, 5);
    const std::string stepAndRun = "01 00000 0000000001" + std::bitset<32>(1000).to_string();
    const std::tuple<const char*, const char*, Bytes, Elements> cases[] = {
        {"any magic", g_vlc, test::fromHex("00000000 00000000"), {}},
        {"no raw element first", g_vlc, stream("A2BC0000 01000000", "111110" + g_end), {15}},
        {"zeros repeat the element",
         g_vlc,
         stream("A2BC0000 02000000", raw100 + repeated("0", 16) + g_end),
         {100, 100}},
        {"also after a class with a base",
         g_vlc,
         stream("A2BC0000 03000000", raw100 + "0001 0000000 0" + repeated("0", 16) + g_end),
         {100, 212, 212}},
        {"a code of the first class after eight zeros",
         g_vlc,
         stream("A2BC0000 02000000", raw100 + "00000000 00000111" + g_end),
         {100, 97}},
        {"a code of the class before, raw elements in between",
         g_vlc,
         stream("A2BC0000 04000000", raw100 + "0001 0000000 0" + raw100 + "00000000 00000010 0011" + g_end),
         {100, 212, 100, 0xFFFFFFE3}},
        {"bytes after the end", g_vlc, stream("A2BC0000 01000000", raw100 + g_end + surplus + "1"), {100}},
        {"no end marker: zeros up to the next word", g_vlc, stream("A2BC0000 03000000", raw100), {100, 100, 100}},
        {"another table", g_vli2, stream("77EE0000 01000000 00000003 AABBCC", "01 00000" + g_end), {1}},
        {"no table", g_vli2, stream("77EE0000 01000000 00000000", "01 00000" + g_end), {1}},
        {"an empty run",
         g_vli2,
         stream("77EE0000 01000000 00000000", "0000000001" + repeated("0", 32) + "1" + g_end),
         {0}},
        {"bytes after the end", g_vli2, stream("77EE0000 01000000 00000000", "1" + g_end + surplus + "1"), {0}},
        {"runs and single elements beyond a bit each", g_vli2,
         stream("77EE0000 8F130000 00000000", repeated(stepAndRun, 5) + "1 1" + g_end + "0"), steps},
    };
    for (const auto& [name, id, block, elements] : cases)
        EXPECT_EQ(unpacked<std::uint32_t>(*compressor(id), block), elements) << name;
}

TEST(IntegerCompressors, DamageIsNamedWithoutTakingMemory) {
    const std::tuple<const char*, Bytes, const char*> cases[] = {
        {g_vlc, test::fromHex("A2BC0000 000000"), "!(bytesInSource >= g_compressionOffset)"},
        {g_vlc, test::fromHex("A2BC0000 01000000"), g_wrongCount},
        {g_vlc, test::fromHex("A2BC0000 FFFFFFFF 01000000649B10100001"), g_wrongCount},
        {g_vlc, test::fromHex("A2BC0000 05000000 01000000 649B1010 00013880 0010"), g_wrongCount},
        {g_vlc, test::fromHex("A2BC0000 03000000 01000000 649B1010 00013880 0010"), g_wrongCount},
        {g_vlc, test::fromHex("A2BC0000 02000000 00"), g_wrongCount},  // three elements come out of a zero byte
        {g_vli2, test::fromHex("77EE0000 000000"), "!(bytesInSource >= g_compressionOffset)"},
        {g_vli2, test::fromHex("76EE0000 00000000" + g_table + "0001 000000"), "!(magic == g_magicNumber)"},
        {g_vli2, test::fromHex("77EE0000 00000000 000000"), g_wrongCount},
        {g_vli2, test::fromHex("77EE0000 00000000 FFFFFFFF 0001"), g_wrongCount},
        {g_vli2, test::fromHex("77EE0000 00000000 00000000"), g_wrongCount},
        {g_vli2, test::fromHex("77EE0000 00000000 00000000 0000"), g_wrongCount},
        {g_vli2, test::fromHex("77EE0000 00000000 00000000 0010"), g_wrongCount},  // a prefix of 12 bits
        {g_vli2, test::fromHex("77EE0000 FFFFFFFF 00000000 0001"), g_wrongCount},
        {g_vli2, stream("77EE0000 FEFFFFFF 00000000", "0000000001" + repeated("1", 31) + "0" + g_end), g_wrongCount},
        {g_vli2, stream("77EE0000 02000000 00000000", "0000000001" + repeated("1", 32) + g_end), g_wrongCount},
        {g_vli2, stream("77EE0000 02000000 00000000", "1" + g_end), g_wrongCount},
        {g_vli2, stream("77EE0000 01000000 00000000", "11" + g_end), g_wrongCount},
    };
    for (const auto& damage : cases) {
        Elements elements;
        EXPECT_EQ(failureOf([&] { compressor(std::get<0>(damage))->Decompress(std::get<1>(damage), elements); }),
                  std::get<2>(damage));
        EXPECT_LT(elements.capacity(), 1000u);
    }
}

/// A walk with steps of all sizes and with runs of zeros.
std::vector<std::int32_t> randomWalk(std::mt19937& random, std::size_t count) {
    std::vector<std::int32_t> elements(count);
    std::uint32_t value = 0;
    for (std::int32_t& element : elements) {
        const auto step = static_cast<std::uint32_t>(random()) >> (14 + random() % 18);
        if (random() % 8 < count % 9)
            value += random() % 2 ? step : 0 - step;
        element = static_cast<std::int32_t>(value);
    }
    return elements;
}

// Every class and every width meets every place in the register, the end of the bytes and the end of the room.
TEST(IntegerCompressors, RandomWalksOfEveryLengthSurvive) {
    std::mt19937 random(5);
    for (const char* id : {g_vlc, g_vli2}) {
        const auto coder = compressor(id);
        for (std::size_t count = 0; count < 600; ++count) {
            const auto elements = randomWalk(random, count);
            Bytes block = packed(*coder, elements);
            ASSERT_EQ(unpacked<std::int32_t>(*coder, block), elements) << id << count;
            block.resize(8 + (block.size() - 8) / 2);
            std::vector<std::int32_t> cut;
            if (count > 10) {
                EXPECT_NE(failureOf([&] { coder->Decompress(block, cut); }), "") << id << count;
            }
        }
    }
}

}  // namespace
}  // namespace kvan::compression
