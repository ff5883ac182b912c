#include "native_bytes.h"
#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"

namespace KVAN::io::QSF {
namespace {

using namespace native_bytes;

Bytes table(std::uint16_t type, std::uint32_t count, const Bytes& entries, const char* key = "") {
    const std::size_t fixedSize = 16 + std::string(key).size();
    Bytes bytes = block(type, 16).add(key).set(8, static_cast<std::uint32_t>(fixedSize)).set(12, count);
    return bytes.add(entries).sized();
}

Bytes dataEntry(std::uint16_t variable, std::uint16_t count, const Bytes& data) {
    Bytes bytes = Bytes(8, '\0').set(2, variable).set(4, count).add(data);
    return bytes.set(0, static_cast<std::uint16_t>(bytes.size()));
}

template <class Table>
Table readTable(const Bytes& bytes, std::uint64_t poolEnd = UINT64_MAX) {
    const auto reader = readerOf("++" + bytes);
    reader->seekTo(2);
    Table table;
    table.Read(*reader, poolEnd);
    return table;
}

template <class Table>
std::string failureReading(const Bytes& bytes, std::uint64_t poolEnd = UINT64_MAX) {
    return failureOf([&] { readTable<Table>(bytes, poolEnd); });
}

/// "variable:data ..."
template <class Table>
std::string dataIn(const Bytes& bytes) {
    std::string text;
    const Table table = readTable<Table>(bytes);
    for (const VarTabDataEntry& entry : table.entries)
        text += std::to_string(entry.variable) + ":" + std::string(entry.data) + " ";
    return text;
}

TEST(VarTabBlocks, EveryKindReadsItsEntries) {
    const Bytes number = Bytes(2, '\7').add(2.5);
    const auto values = readTable<KeyedVarTabValues>(table(0x000D, 2, Bytes(number).add(number), "\1\2\3\4"));
    EXPECT_EQ(values.header.polarity, 1);
    EXPECT_EQ(values.header.acquisitionMode, 2);
    EXPECT_EQ(values.header.msLevel, 3);
    EXPECT_EQ(values.header.scanMode, 4);
    ASSERT_EQ(values.entries.size(), 2u);
    EXPECT_EQ(values.entries[1].variable, 0x0707);
    EXPECT_EQ(std::memcmp(values.entries[1].value, number.data() + 2, 8), 0);

    const Bytes texts = dataEntry(1, 6, Bytes("a\0b\0\0\0rest", 10)).add(dataEntry(2, 0, "x")).add(dataEntry(3, 0, ""));
    EXPECT_EQ(dataIn<VarTabStrings>(table(0x0002, 3, texts)), std::string("1:a\0b 2: 3: ", 12));
    EXPECT_EQ(dataIn<KeyedVarTabStrings>(table(0x000E, 1, texts, "abcd")), std::string("1:a\0b ", 6));
    const Bytes vectors = dataEntry(1, 2, "12345678and more").add(dataEntry(2, 65535, "")).add(dataEntry(3, 0, "x"));
    EXPECT_EQ(dataIn<VarTabVectors<int>>(table(0x0011, 3, vectors)), "1:12345678 2: 3: ");
    EXPECT_EQ(dataIn<VarTabVectors<double>>(table(0x0012, 3, vectors)), "1:12345678and more 2: 3: ");
    EXPECT_EQ(dataIn<KeyedVarTabVectors<int>>(table(0x0021, 1, vectors, "abcd")), "1:12345678 ");
    EXPECT_EQ(dataIn<KeyedVarTabVectors<double>>(table(0x0022, 1, vectors, "abcd")), "1:12345678and more ");
    const Bytes lists = dataEntry(1, 2, Bytes("one\0two", 7))
                            .add(dataEntry(2, 2, Bytes("one\0two\0", 8)))
                            .add(dataEntry(3, 3, Bytes("one\0two", 7)));
    EXPECT_EQ(dataIn<VarTabVectors<std::string>>(table(0x0013, 3, lists)), std::string("1:one\0two 2: 3: ", 16))
        << "a zero byte after the last text is one text more, and less than claimed is none";
    EXPECT_EQ(dataIn<KeyedVarTabVectors<std::string>>(table(0x0023, 1, lists, "abcd")), std::string("1:one\0two ", 10));
}

TEST(VarTabBlocks, ClaimsThatCannotBeTrueAreReadErrors) {
    const Bytes values = table(0x0001, 2, Bytes(20, '.'));
    const Bytes texts = table(0x0002, 2, dataEntry(1, 3, "abc").add(dataEntry(1, 3, "abc")));
    const std::uint64_t end = 2 + texts.size();
    for (std::size_t size = 0; size < values.size(); ++size)
        EXPECT_EQ(failureReading<VarTabValues>(values.cutAt(size)), g_readError) << size;
    for (std::size_t size = 0; size < texts.size(); ++size) {
        EXPECT_EQ(failureReading<VarTabStrings>(texts.cutAt(size)), g_readError) << size;
        EXPECT_EQ(failureReading<VarTabStrings>(texts, size), g_readError) << "pool ends at " << size;
    }
    EXPECT_EQ(failureReading<VarTabStrings>(texts, end), "");
    for (const std::uint32_t count : {3u, 4294967295u}) {
        EXPECT_EQ(failureReading<VarTabValues>(Bytes(values).set(12, count)), g_readError) << count;
        EXPECT_EQ(failureReading<VarTabStrings>(Bytes(texts).set(12, count)), g_readError) << count;
    }
    EXPECT_EQ(failureReading<VarTabValues>(Bytes(values).set(0, 35u)), g_readError) << "beyond the block";
    EXPECT_EQ(failureReading<VarTabValues>(Bytes(values).set(8, 4294967295u)), g_readError);
    for (const int size : {0, 7, 23, 65535})
        EXPECT_EQ(failureReading<VarTabStrings>(Bytes(texts).set(16, static_cast<std::uint16_t>(size))), g_readError)
            << size;
    EXPECT_EQ(failureReading<VarTabStrings>(Bytes(texts).set(20, std::uint16_t{4})), g_readError);
    EXPECT_EQ(failureReading<VarTabVectors<int>>(table(0x0011, 1, dataEntry(1, 2, "7 bytes"))), g_readError);
    EXPECT_EQ(failureReading<VarTabVectors<double>>(table(0x0012, 1, dataEntry(1, 1, "7 bytes"))), g_readError);
    EXPECT_EQ(failureReading<VarTabValues>(texts),
              "QSF: expected resource type: 1, got: 2 current offset: 18; expected version: 49056, got: 49056");
}

TEST(ConditionBlocks, TakeTheirPoolsInOrder) {
    const auto texts = [](std::uint16_t type, const char* text) {
        return table(type, 1, dataEntry(1, 1, text), type == 0x000E ? "abcd" : "");
    };
    const auto condition = [](std::uint16_t type, std::size_t fixedSize, const Bytes& pool) {
        return block(type, fixedSize).set(8, static_cast<std::uint32_t>(fixedSize)).add(pool).sized();
    };
    const Bytes pool = texts(0x0002, "1").add(texts(0x000E, "2")).add(texts(0x0002, "3")).add(texts(0x000E, "4"));
    const auto segment = readBlock<SegmentConditionBlock>(condition(0x2001, 20, pool));
    EXPECT_EQ(segment.strings.entries.begin()->data, "1") << "the first one is taken";
    ASSERT_EQ(segment.keyedStrings.size(), 2u);
    EXPECT_EQ(segment.keyedStrings[1].entries.begin()->data, "4");

    const auto failure = [&](const Bytes& bytes) {
        return failureOf([&] { readBlock<SpectrumConditionBlock>(condition(0x2002, 40, bytes)); });
    };
    const Bytes parameters = Bytes(block(0x0005, 20)).set(6, std::uint16_t{1}).set(8, 16u).set(12, 1u);
    EXPECT_EQ(failure(Bytes(pool).add(block(0x0006, 12)).add(parameters)), "");
    EXPECT_EQ(failure(Bytes(parameters).set(12, 2u)), g_readError);
    EXPECT_EQ(failure(block(0x0006, 12).set(0, 11u)), g_readError);
    EXPECT_EQ(failure(block(0x0006, 12).set(6, std::uint16_t{1})).substr(0, 33), "QSF: expected resource type: 6, g");
}

}  // namespace
}  // namespace KVAN::io::QSF
