#include "native_bytes.h"
#include "qsf2sql/passes/side_file_scan.h"
#include "qsf2sql/qsflib/QuickInfoEntry.h"

namespace kvan::io::qsf2sql::passes {
namespace {

using namespace KVAN::io::QSF;
using namespace native_bytes;

Bytes container(const Bytes& entry, std::uint32_t tail = 12) {
    return Bytes(12, '\0')
        .set(4, std::uint16_t{0x5001})
        .add(entry)
        .fill(tail, '\0')
        .set(8, static_cast<std::uint32_t>(12 + entry.size() + tail));
}

std::vector<std::uint64_t> entrySizes(const Bytes& bytes, const SideFileHead& head) {
    const auto reader = readerOf(bytes);
    const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql.test");
    SideFileScan scan(*reader, head, logger);
    std::vector<std::uint64_t> sizes;
    while (const auto entry = scan.nextEntry())
        sizes.push_back(entry->contentSize());
    return sizes;
}

TEST(SideFileScan, EntriesBeginAfterTheBlockThatAnnouncesThem) {
    const Bytes entries = container(Bytes(24, 'x')).add(container(Bytes(30, 'y')));
    const Bytes head = block(0x4001, 8).add(block(0x7001, 10)).add(block(0x1234, 8));
    using Sizes = std::vector<std::uint64_t>;
    EXPECT_EQ(entrySizes(Bytes(head).add(block(0x7002, 12)).add(entries).add(endOfFile()), g_indexFileHead),
              (Sizes{24, 30}));
    EXPECT_EQ(entrySizes(block(0x7004, 8).add(entries).add(endOfFile()), g_extraFileHead), (Sizes{24, 30}));
    EXPECT_EQ(entrySizes(Bytes(head).add(entries).add(endOfFile()), g_indexFileHead), Sizes{}) << "never announced";
    EXPECT_EQ(entrySizes(block(0x7002, 8).add(container(Bytes())).add(entries), g_indexFileHead), Sizes{})
        << "an empty container ends the scan";
    EXPECT_EQ(failureOf([&] { entrySizes(block(0x7002, 8).add(entries), g_indexFileHead); }), g_readError);
}

/// The head with a gap after it, the record, two masses, the calibration bytes "abc".
Bytes quickInfo() {
    Bytes record(60, '\0');
    record.set(0, std::uint16_t{71}).set(2, std::uint16_t{60}).set(4, std::uint16_t{68}).set(20, 42u);
    record.set(50, std::uint8_t{2}).set(56, std::uint16_t{0x0201}).set(58, std::uint16_t{0x0403});
    return Bytes(12, '\0').set(4, std::uint16_t{15}).add("gap").add(record).add(500.5f).add(250.25f).add("abc");
}

constexpr std::size_t g_record = 15;

QuickInfoEntry readEntry(const std::string& bytes, std::uint64_t start = 0) {
    const auto reader = readerOf(bytes);
    reader->seekTo(start);
    QuickInfoEntry entry;
    entry.Read(*reader, start + quickInfo().size());
    return entry;
}

TEST(QuickInfoEntry, ReadsMassesAndCalibrationWhereTheRecordSays) {
    using Calibration = std::vector<std::uint8_t>;
    const Bytes whole = quickInfo();
    auto entry = readEntry("+" + whole, 1);
    EXPECT_EQ(entry.record.spectrum, 42u);
    EXPECT_EQ(entry.masses, (std::vector<float>{500.5f, 250.25f}));
    EXPECT_EQ(entry.calibration, (Calibration{1, 2, 3, 4, 'a', 'b', 'c'}));

    for (const unsigned offset : {0u, 71u, 72u})
        EXPECT_EQ(readEntry(Bytes(whole).set(g_record + 4, static_cast<std::uint16_t>(offset))).calibration,
                  (Calibration{1, 2, 3, 4}));
    entry.Read(*readerOf(Bytes(whole).set(g_record + 2, 0u)), whole.size());
    EXPECT_TRUE(entry.masses.empty()) << "those of the entry before are forgotten";
    EXPECT_EQ(entry.calibration.size(), 4u);
    EXPECT_TRUE(readEntry(Bytes(whole).set(g_record + 50, std::uint8_t{0})).masses.empty());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(failureOf([&] { readEntry(whole.cutAt(size)); }), g_readError) << size;
    const Bytes longer = Bytes(whole).add("the next container");
    for (const Bytes& beyond :
         {Bytes(longer).set(g_record, std::uint16_t{72}), Bytes(longer).set(g_record + 2, std::uint16_t{64}),
          Bytes(longer).set(4, std::uint16_t{30})})
        EXPECT_EQ(failureOf([&] { readEntry(beyond); }), g_readError) << "reaches beyond its container";
}

}  // namespace
}  // namespace kvan::io::qsf2sql::passes
