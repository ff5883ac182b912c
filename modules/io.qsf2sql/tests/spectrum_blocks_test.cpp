#include "compressor_calls.h"
#include "native_bytes.h"
#include "qsf2sql/qsflib/LineSpectrumBlock.h"
#include "qsf2sql/qsflib/ScanSpectrumBlock.h"

namespace KVAN::io::QSF {
namespace {

using namespace native_bytes;
using kvan::io::qsf2sql_detail::NativeType;

template <class T>
Bytes scanBlock(std::uint8_t plainType, std::uint8_t packedType, std::uint32_t count, const std::vector<T>& elements) {
    Bytes bytes = block(0x1001, 44).set(20, plainType).set(22, packedType).set(24, count);
    for (const T element : elements)
        bytes.add(element);
    return bytes.sized();
}

template <class T>
Bytes plainScan(std::uint8_t type, const std::vector<T>& elements) {
    return scanBlock(type, 0, static_cast<std::uint32_t>(elements.size()), elements);
}

/// One element as the compressor of integers writes it.
const std::vector<std::uint8_t> g_packedSeven = kvan::test::fromHex("A2BC0000 01000000 0100000007 0001");

std::shared_ptr<kvan::compression::ICompressor> vlc() {
    return kvan::compression::compressor("4f1ea0cb-5a6a-43ed-9562-d6d873034577");
}

ScanSpectrumBlock readScan(const Bytes& bytes, bool withCompressor = false) {
    ScanSpectrumBlock scan;
    scan.Read(*readerOf(bytes, Access::Arrays), withCompressor ? vlc() : nullptr);
    return scan;
}

template <class To>
std::vector<To> elementsAs(const ScanSpectrumBlock& scan) {
    std::vector<To> elements(scan.GetNumberOfEntries());
    scan.GetScanDataSave(std::span(elements));
    return elements;
}

template <class Stored>
void expectElements(std::uint8_t type, const std::vector<Stored>& stored, const std::vector<std::uint32_t>& unsigneds,
                    const std::vector<float>& floats, const std::vector<double>& doubles) {
    const ScanSpectrumBlock scan = readScan(plainScan(type, stored));
    EXPECT_EQ(scan.GetElementType(), type);
    EXPECT_EQ(scan.GetNumberOfEntries(), stored.size());
    EXPECT_EQ(elementsAs<std::uint32_t>(scan), unsigneds);
    EXPECT_EQ(elementsAs<float>(scan), floats);
    EXPECT_EQ(elementsAs<double>(scan), doubles);
}

TEST(ScanSpectrumBlock, EveryElementTypeConvertsToEveryTypeAskedFor) {
    expectElements<std::int32_t>(5, {-1, 16777217}, {4294967295u, 16777217}, {-1.0f, 16777216.0f}, {-1.0, 16777217.0});
    expectElements<std::uint32_t>(6, {4294967295u}, {4294967295u}, {4294967296.0f}, {4294967295.0});
    expectElements<std::int64_t>(7, {-2, 0x100000005}, {4294967294u, 5}, {-2.0f, 4294967301.0f}, {-2.0, 4294967301.0});
    expectElements<float>(9, {-1.5f, 2.75f}, {4294967295u, 2}, {-1.5f, 2.75f}, {-1.5, 2.75});
    expectElements<double>(10, {4294967298.9, 0.1, -0.9}, {2, 0, 0}, {4294967296.0f, 0.1f, -0.9f},
                           {4294967298.9, 0.1, -0.9});
    expectElements<float>(9, {}, {}, {}, {});

    const double limit = std::ldexp(1.0, 63);
    const std::vector<double> extremes{limit, -limit, limit - 1024, 1e300, -1e300, std::nan("")};
    EXPECT_EQ(elementsAs<std::uint32_t>(readScan(plainScan(10, extremes))),
              (std::vector<std::uint32_t>{0, 0, 4294966272u, 0, 0, 0}));
}

TEST(ScanSpectrumBlock, IsPackedOnlyIfTheCompressorKnowsByte22) {
    for (const bool withCompressor : {true, false})
        EXPECT_EQ(elementsAs<float>(readScan(scanBlock<float>(9, 9, 1, {2.5f}), withCompressor)),
                  std::vector<float>{2.5f});
    const ScanSpectrumBlock packed = readScan(scanBlock<std::uint8_t>(9, 6, 15, g_packedSeven), true);
    EXPECT_EQ(packed.GetElementType(), ELEMENT_UINT32);
    EXPECT_EQ(elementsAs<double>(packed), std::vector<double>{7});
}

TEST(ScanSpectrumBlock, AFailureLeavesTheTypeUnknownAndSaysWhy) {
    const Bytes whole = plainScan<float>(9, {1.0f, 2.5f});
    const std::pair<Bytes, std::string> cases[] = {
        {whole.cutAt(51), g_readError},
        {scanBlock<double>(10, 0, 4294967295u, {1.0}), g_readError},
        {scanBlock<std::uint32_t>(0, 6, 4294967295u, {1}), g_readError},
        {Bytes(whole).set(6, std::uint16_t{0xBFA1}),
         "QSF: expected resource type: 4097, got: 4097 current offset: 44; expected version: 49056, got: 49057"},
        {plainScan<float>(8, {1.0f}),
         "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities"},
        {scanBlock<std::uint8_t>(0, 6, 3, {1, 2, 3}),
         "Decompression failed; std::exception::what() = !(bytesInSource >= g_compressionOffset)"},
    };
    for (const auto& item : cases) {
        ScanSpectrumBlock scan = readScan(whole);
        EXPECT_EQ(failureOf([&] { scan.Read(*readerOf(item.first), vlc()); }), item.second);
        EXPECT_EQ(scan.GetElementType(), ELEMENT_UNKNOWN);
        EXPECT_EQ(failureOf([&] { scan.GetNumberOfEntries(); }),
                  "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, ScanSpectrumBlock::GetNumberOfEntries");
        EXPECT_EQ(failureOf([&] { scan.GetScanDataSave(std::span<float>()); }),
                  "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, unknown scan data type");
    }
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(failureOf([&] { readScan(whole.cutAt(size)); }), g_readError) << size;
}

/// Field 16 at 44, 17 at 144, ..., 21 at 544 after the extended head at 52; `absent` has none.
Bytes lineBlock(std::uint32_t layout, std::uint32_t count, std::uint32_t absent = 0) {
    Bytes bytes = block(0x1002, 96).set(20, layout).set(24, count);
    for (std::uint32_t field = 16; field <= 21; ++field)
        bytes.set(56 + 4 * (field - 16), field != absent ? 44 + 100 * (field - 16) : 0);
    return bytes;
}

TEST(LineSpectrumBlock, EveryLayoutTellsTypeAndPlaceOfEveryField) {
    const NativeType types[][2] = {{NativeType::Float, NativeType::Float},
                                   {NativeType::Double, NativeType::Double},
                                   {NativeType::Double, NativeType::Float}};
    for (std::uint32_t layout = 1; layout <= 3; ++layout) {
        for (std::uint8_t field = 16; field <= 21; ++field) {
            // The claim of four billion lines takes no memory, and the fields need not lie in the file.
            const auto reader = readerOf("ab" + lineBlock(layout, 4294967295u), Access::Arrays);
            const kvan::io::StoredArray stored = LineSpectrumBlock::Locate(*reader, 2, field);
            EXPECT_EQ(stored.type, types[layout - 1][field == 16 ? 0 : 1]);
            EXPECT_EQ(stored.count, 4294967295u);
            EXPECT_EQ(stored.position, 2u + 52 + 44 + 100 * (field - 16u));
        }
    }
}

TEST(LineSpectrumBlock, AnAbsentFieldHasNoEntriesAndAnImpossibleOneIsRefused) {
    const kvan::io::StoredArray absent = LineSpectrumBlock::Locate(*readerOf(lineBlock(1, 5, 19)), 0, 19);
    EXPECT_EQ(absent.type, NativeType::Absent);
    EXPECT_EQ(absent.count, 0u);
    EXPECT_EQ(LineSpectrumBlock::Locate(*readerOf(lineBlock(1, 0)), 0, 19).type, NativeType::Float);

    const auto reader = readerOf(lineBlock(1, 5));
    for (const std::uint8_t field : {std::uint8_t{15}, std::uint8_t{22}})
        EXPECT_EQ(kvan::test::failureOf<std::invalid_argument>([&] { LineSpectrumBlock::Locate(*reader, 0, field); }),
                  "Requested field ID out of range: #" + std::to_string(field));
    const auto failureFor = [](const Bytes& bytes) {
        return failureOf([&] { LineSpectrumBlock::Locate(*readerOf(bytes), 0, 16); });
    };
    for (const std::uint32_t layout : {0u, 4u, 0x10001u})
        EXPECT_EQ(failureFor(lineBlock(layout, 5)), "Shouldn't happen");
    EXPECT_EQ(failureFor(lineBlock(1, 5).set(4, std::uint16_t{0x1001})),
              "QSF: expected resource type: 4098, got: 4097 current offset: 52; expected version: 49056, got: 49056");
    for (const std::uint32_t layout : {1u, 2u, 3u})
        for (std::size_t size = 0; size < (layout == 2 ? 96u : 92u); ++size)
            EXPECT_EQ(failureFor(lineBlock(layout, 5).cutAt(size)), g_readError) << size;
}

}  // namespace
}  // namespace KVAN::io::QSF
