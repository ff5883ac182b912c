#include "native_bytes.h"
#include "qsf2sql/qsflib/AnalysisHeaderBlock.h"
#include "qsf2sql/qsflib/CompressionInfoBlock.h"
#include "qsf2sql/qsflib/InstrumentInfoBlock.h"
#include "qsf2sql/qsflib/SegmentConditionBlock.h"
#include "qsf2sql/qsflib/SpectrumConditionBlock.h"

namespace KVAN::io::QSF {
namespace {

using namespace native_bytes;
using Texts = std::vector<std::string>;

template <class Block>
std::string failureReading(const Bytes& bytes) {
    return failureOf([&] { readBlock<Block>(bytes); });
}

TEST(CompressionInfoBlock, TurnsGuidsIntoText) {
    const Bytes guid("\xCB\xA0\x1E\x4F\x6A\x5A\xED\x43\x95\x62\xD6\xD8\x73\x03\x45\x77", 16);
    const Bytes entry = Bytes(offsetof(CompressionInfoEntry, guid), '\0')
                            .add(guid)
                            .add("name")
                            .set(offsetof(CompressionInfoEntry, size), std::uint16_t{30})
                            .set(offsetof(CompressionInfoEntry, textSize), std::uint16_t{4});
    const Bytes bytes = block(0x4003, 14)
                            .set(offsetof(CompressionInfoHeader, entryOffset), std::uint16_t{14})
                            .set(offsetof(CompressionInfoHeader, entryCount), std::uint8_t{2})
                            .add(entry)
                            .add("..");
    const std::string text = "4f1ea0cb-5a6a-43ed-9562-d6d873034577";
    EXPECT_EQ(readBlock<CompressionInfoBlock>(bytes + entry).compressors, (Texts{text, text}));
    EXPECT_EQ(failureReading<CompressionInfoBlock>(bytes), g_readError) << "the second entry is missing";
    EXPECT_EQ(failureReading<CompressionInfoBlock>(Bytes(bytes).add(entry).cutAt(71)), g_readError) << "text is cut";
    EXPECT_EQ(readBlock<CompressionInfoBlock>(block(0x4003, 12)).compressors, Texts{});
}

Bytes description() {
    Bytes bytes = block(0x3003, 64);
    const std::uint32_t offsets[] = {0, 64, 69, 0, 72, 74, 74, 70, 0, 76};
    for (std::size_t index = 0; index < 10; ++index)
        bytes.set(8 + 4 * index, offsets[index]);
    return bytes.add(Bytes("a\0b\0\0\xE9xyzvw", 11)).add(Bytes("d\0", 2)).sized();
}

TEST(AnalysisDescriptionBlock, TextsEndWhereTheNextOneStartsWithoutTrailingZeros) {
    const Bytes bytes = description();
    const auto texts = readBlock<AnalysisDescriptionBlock>("++" + bytes, 2).texts;
    EXPECT_EQ(texts[0], "");
    EXPECT_EQ(texts[1], std::string("a\0b", 3)) << "a zero byte inside stays";
    EXPECT_EQ(texts[2], "\xE9xy") << "up to text 4, since text 3 is missing";
    EXPECT_EQ(texts[3], "");
    EXPECT_EQ(texts[4], "zv");
    EXPECT_EQ(texts[5], "") << "text 6 starts at the same place";
    EXPECT_EQ(texts[6], "") << "text 7 starts before it";
    EXPECT_EQ(texts[7], Bytes("xyzvwd")) << "up to text 9, text 8 is missing";
    EXPECT_EQ(texts[9], "") << "nothing but zeros";

    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_EQ(failureReading<AnalysisDescriptionBlock>(bytes.cutAt(size)), g_readError) << size;
    EXPECT_EQ(failureReading<AnalysisDescriptionBlock>(Bytes(bytes).set(0, 4294967295u)), g_readError);
    EXPECT_EQ(failureReading<AnalysisDescriptionBlock>(Bytes(bytes).set(0, 73u)), g_readError) << "beyond its block";
    EXPECT_EQ(failureReading<AnalysisDescriptionBlock>(Bytes(bytes).set(4, std::uint16_t{1})),
              "QSF: expected resource type: 12291, got: 1 current offset: 64; expected version: 49056, got: 49056");
}

TEST(AnalysisDescriptionBlock, SerialFallbackIsTruncatedAndSaturates) {
    const std::pair<float, std::int32_t> cases[] = {
        {12.9f, 12}, {-12.9f, -12}, {3e9f, INT32_MAX}, {-INFINITY, INT32_MIN}, {std::nanf(""), -1}};
    for (const auto& [stored, serial] : cases)
        EXPECT_EQ(readBlock<AnalysisDescriptionBlock>(
                      block(0x3003, 64).set(offsetof(AnalysisDescriptionRecord, serialFallback), stored))
                      .serialFallback,
                  serial);
}

TEST(InstrumentInfoBlock, ReadsBothTextsAndHoldsTheRestAgainstTheFile) {
    constexpr std::size_t offset = offsetof(InstrumentInfoRecord, textOffset);
    constexpr std::size_t size = offsetof(InstrumentInfoRecord, textSize);
    const Bytes head = block(0x0024, 40).set(offset, 40u).set(size, std::uint16_t{4}).set(offset + 8, 44u);
    const Bytes whole = Bytes(head).set(size + 4, std::uint16_t{2}).add(Bytes("A\0\0\0BB", 6));
    const auto info = readBlock<InstrumentInfoBlock>(whole);
    EXPECT_EQ(info.textA, "A");
    EXPECT_EQ(info.textB, "BB");
    EXPECT_EQ(readBlock<InstrumentInfoBlock>(Bytes(whole).set(size, std::uint16_t{0})).textA, "");
    EXPECT_EQ(failureReading<InstrumentInfoBlock>(whole.cutAt(45)), g_readError);
    EXPECT_EQ(failureReading<InstrumentInfoBlock>(Bytes(whole).set(offset + 4, 45u).set(size + 2, std::uint16_t{2})),
              g_readError);
    const Bytes withList = Bytes(whole)
                               .set(offsetof(InstrumentInfoRecord, listOffset), 46u)
                               .set(offsetof(InstrumentInfoRecord, listCount), std::uint16_t{2});
    EXPECT_EQ(failureReading<InstrumentInfoBlock>(Bytes(withList).add(Bytes(47, ' '))), g_readError);
    EXPECT_EQ(readBlock<InstrumentInfoBlock>(Bytes(withList).add(Bytes(48, ' '))).textA, "A");
}

Bytes variable(std::uint16_t index) {
    VarTabDescEntryRecord record{};
    record.size = 27;
    record.variable = index;
    record.elementType = 10;
    record.isVector = 1;
    record.textOffset[0] = 20;
    record.textOffset[2] = 23;
    record.textOffset[5] = 26;
    return Bytes().add(record).add("Name").fill(2, '\0').add("V");
}

TEST(VarTabDescBlock, ReadsEntriesAndRefusesThoseThatHoldLessThanTheyClaim) {
    constexpr std::size_t entryCount = offsetof(VarTabDescHeader, entryCount);
    constexpr std::size_t textOffset = offsetof(VarTabDescEntryRecord, textOffset);
    const Bytes head = block(0x3002, 12)
                           .set(offsetof(VarTabDescHeader, entryOffset), std::uint16_t{14})
                           .set(entryCount, std::uint16_t{2})
                           .add("..");
    const auto block = readBlock<VarTabDescBlock>(Bytes(head).add(variable(7)).add(variable(9)).sized());
    ASSERT_EQ(block.entries.size(), 2u);
    const VarTabDescEntryBlock& entry = block.entries[1];
    EXPECT_EQ(entry.variable, 9);
    EXPECT_EQ(entry.elementType, 10);
    EXPECT_EQ(entry.isVector, 1);
    EXPECT_EQ(entry.texts, (std::array<std::string, 6>{"Nam", "", "e", "", "", "V"}));

    EXPECT_EQ(failureReading<VarTabDescBlock>(Bytes(head).add(variable(7)).sized()), g_readError);
    EXPECT_EQ(failureReading<VarTabDescBlock>(Bytes(head).add(variable(7)).sized().add(variable(9))), g_readError)
        << "the second one lies after the block";
    // Entries of a few bytes that all claim the same long texts would make gigabytes of a small file.
    Bytes swarm = Bytes(head).set(entryCount, std::uint16_t{65535});
    for (int index = 0; index < 65535; ++index)
        swarm.add(variable(1)
                      .set(textOffset + 2, std::uint16_t{1})
                      .set(textOffset + 4, std::uint16_t{65535})
                      .cutAt(20)
                      .set(0, std::uint16_t{20}));
    EXPECT_EQ(failureReading<VarTabDescBlock>(swarm.sized()), g_readError);
    for (const std::uint16_t size : {std::uint16_t{0}, std::uint16_t{19}})
        EXPECT_EQ(failureReading<VarTabDescBlock>(Bytes(head).add(variable(7).set(0, size)).add(swarm)), g_readError);
}

Bytes calibration(const char* text) {
    return Bytes(block(0x0006, 12)).add(text).sized();
}

TEST(AnalysisHeaderBlock, TakesItsPoolByType) {
    const Bytes other = block(0x7777, 9);
    const Bytes pool = calibration("one").add(other).add(description()).add(calibration("two")).add(calibration(""));
    const Bytes second = description().set(offsetof(AnalysisDescriptionRecord, instrumentSourceType), std::uint8_t{5});
    constexpr std::size_t poolOffset = offsetof(AnalysisHeaderRecord, poolOffset);
    constexpr std::size_t textOffset = offsetof(AnalysisHeaderRecord, textOffset);
    const Bytes head = block(0x3001, 70).set(poolOffset, 70u).set(offsetof(AnalysisHeaderRecord, timebase), 500u);
    const Bytes whole = Bytes(head).add(pool).add(second).sized();
    const auto header = readBlock<AnalysisHeaderBlock>("+" + whole + calibration("beyond"), 1);
    EXPECT_EQ(header.header.timebase, 500u);
    EXPECT_FALSE(header.variables);
    ASSERT_TRUE(header.description);
    EXPECT_EQ(header.description->instrumentSourceType, 0) << "the first one is taken";
    ASSERT_EQ(header.calibrations.size(), 3u);
    EXPECT_EQ(header.calibrations[1]->blob, (std::vector<std::uint8_t>{'t', 'w', 'o'}));
    EXPECT_TRUE(header.calibrations[2]->blob.empty());

    EXPECT_FALSE(readBlock<AnalysisHeaderBlock>(Bytes(whole).set(poolOffset, 0u)).description) << "no pool";
    EXPECT_EQ(
        failureReading<AnalysisHeaderBlock>(
            Bytes(whole).set(textOffset, 60u).set(offsetof(AnalysisHeaderRecord, textSize), std::uint16_t{65535})),
        g_readError)
        << "the text that nobody uses lies beyond the file";
    EXPECT_EQ(failureReading<AnalysisHeaderBlock>(Bytes(whole).set(70, 11u)), g_readError) << "less than its head";
}

TEST(ResourcePool, TheWalkIsBoundedByTheBlockWhateverItsEntriesSay) {
    const auto calibrationsIn = [](const Bytes& pool, std::uint32_t offset = 40) {
        const Bytes bytes = block(0x2002, 40).set(8, offset).add(pool).sized();
        const auto reader = readerOf(bytes + calibration("beyond"));
        ResourcePool blocks;
        blocks.Read(*reader, 0, static_cast<std::uint32_t>(bytes.size()), offset);
        return blocks.TakeAll<CalibrationBlock>(*reader, RESTYPE_CALIBRATION).size();
    };
    const Bytes one = calibration("one");
    const auto sized = [&](std::uint32_t size) { return Bytes(one).set(0, size).add(one); };
    EXPECT_EQ(calibrationsIn(Bytes(one).add(one)), 2u);
    EXPECT_EQ(calibrationsIn(Bytes(one).fill(7, '\0')), 1u) << "no room for a head";
    EXPECT_EQ(calibrationsIn(Bytes(one).add(sized(7))), 1u) << "smaller than a head";
    EXPECT_EQ(calibrationsIn(Bytes(one).add(sized(38))), 2u) << "reaches beyond the pool";
    EXPECT_EQ(calibrationsIn(one, 4294967295u), 0u) << "a pool beyond the block";
    EXPECT_EQ(failureOf([&] { calibrationsIn(Bytes(one).fill(8, '\0')); }), "QSF: pool entry of size 0.");
    EXPECT_EQ(failureReading<SegmentConditionBlock>(block(0x2001, 20).set(8, 20u).set(0, 4294967295u)), g_readError);
}

}  // namespace
}  // namespace KVAN::io::QSF
