#include "road.h"

#include <sample-analysis/packing.h>

#include <boost/filesystem/fstream.hpp>

namespace road {
namespace {

using namespace KVAN::io::QSF;

constexpr std::uint64_t arrayId(std::uint64_t kind, std::uint64_t offset) {
    return kind << 56 | offset;
}

class ArrayReading : public Road {};

TEST_F(ArrayReading, ScansOfEveryServedElementType) {
    const auto locations = write({{.profile = std::vector<std::uint32_t>{0, 7, 4294967295u}},
                                  {.profile = std::vector<float>{-1.75F, 2.5F, 3e9F}},
                                  {.profile = std::vector<double>{-1.75, 16777217.0}},
                                  {.profile = std::vector<std::uint32_t>{}}});
    const Storage storage(mainFile());
    const auto scan = [&](std::size_t index) { return arrayId(66, locations[index].scan); };
    EXPECT_EQ(storage.read<double>(scan(0)), (std::vector<double>{0, 7, 4294967295.0}));
    EXPECT_EQ(storage.read<std::uint32_t>(scan(1)), (std::vector<std::uint32_t>{4294967295u, 2, 3000000000u}));
    EXPECT_EQ(storage.read<float>(scan(2)), (std::vector<float>{-1.75F, 16777216.0F}));
    EXPECT_EQ(storage.length(scan(3)), 0);
    EXPECT_TRUE(storage.read<float>(scan(3)).empty());
}

// Counts of all sizes, with repeats, signs of differences and runs of zeros; long enough for every road in a decoder.
std::vector<std::uint32_t> counts() {
    std::vector<std::uint32_t> elements(70'000);
    for (std::uint32_t index = 0; index < elements.size(); ++index)
        elements[index] = index % 1000 < 300 ? 0 : index * 2654435761u >> index % 31;
    return elements;
}

TEST_F(ArrayReading, ScansOfEveryCompressorAsEveryType) {
    const std::vector<std::uint32_t> profile = counts();
    for (const auto compressor : {sample::Compressor::Vlc, sample::Compressor::Vli2, sample::Compressor::ZLib}) {
        SCOPED_TRACE(sample::guidOf(compressor));
        sample::ProfilePacker packer(compressor);
        std::vector<SpectrumData> spectra = {{.profile = packer.pack(profile)},
                                             {.profile = packer.pack(std::vector<std::uint32_t>())},
                                             {.profile = profile}};
        const bool isZLib = compressor == sample::Compressor::ZLib;
        if (isZLib)
            spectra.push_back({.profile = packer.pack(std::vector<float>(profile.begin(), profile.end()))});
        const auto locations = write(spectra, {.compressors = {sample::guidOf(compressor)}});
        const Storage storage(mainFile());
        const auto scan = [&](std::size_t index) { return arrayId(66, locations[index].scan); };
        EXPECT_EQ(storage.read<std::uint32_t>(scan(0)), profile);
        EXPECT_EQ(storage.read<double>(scan(0)), std::vector<double>(profile.begin(), profile.end()));
        EXPECT_EQ(storage.read<float>(scan(0)), std::vector<float>(profile.begin(), profile.end()));
        EXPECT_EQ(storage.length(scan(1)), 0);
        EXPECT_EQ(storage.read<std::uint32_t>(scan(2)), profile) << "a plain scan among packed ones";
        if (isZLib) {
            EXPECT_EQ(storage.read<float>(scan(3)), std::vector<float>(profile.begin(), profile.end()));
        }
    }
}

TEST_F(ArrayReading, DamagedPackedScanIsNamedAndSpoilsNoOther) {
    sample::ProfilePacker packer(sample::Compressor::Vlc);
    auto packed = std::get<sample::PackedVector>(packer.pack(counts()));
    const SpectrumData whole{.profile = packed};
    packed.bytes[4] ^= 1;
    const auto locations =
        write({{.profile = packed}, whole}, {.compressors = {sample::guidOf(sample::Compressor::Vlc)}});
    const Storage storage(mainFile());
    EXPECT_EQ(storage.failureOf(arrayId(66, locations[0].scan)),
              "Decompression failed; std::exception::what() = !(originalSize == *integerInDestination)");
    EXPECT_EQ(storage.read<std::uint32_t>(arrayId(66, locations[1].scan)), counts());
}

TEST_F(ArrayReading, SignedScansAreCountedButNotServed) {
    const auto locations =
        write({{.profile = std::vector<std::int32_t>{-1, 2}}, {.profile = std::vector<std::int64_t>{-1, 2, 3}}});
    const Storage storage(mainFile());
    EXPECT_EQ(storage.length(arrayId(66, locations[0].scan)), 2);
    EXPECT_EQ(storage.failureOf(arrayId(66, locations[0].scan)), "ScanSpectrumBlock unsupported format 5");
    EXPECT_EQ(storage.length(arrayId(66, locations[1].scan)), 3);
    EXPECT_EQ(storage.failureOf(arrayId(66, locations[1].scan)), "ScanSpectrumBlock unsupported format 7");
}

TEST_F(ArrayReading, LineFieldsOfEveryLayout) {
    for (const LineLayout layout : {LINES_FLOAT_FLOAT, LINES_DOUBLE_DOUBLE, LINES_DOUBLE_FLOAT}) {
        const auto locations = write({{.lines = LineData{.layout = layout,
                                                         .index = {{1.5, 2.75}},
                                                         .intensity = {{10, 20}},
                                                         .indexWidth = {{0.5, 0.25}},
                                                         .snr = {{-3, 4}},
                                                         .field21 = {{7, 8}}}}});
        const Storage storage(mainFile());
        const auto field = [&](std::uint64_t kind) { return arrayId(kind, locations[0].lines); };
        EXPECT_EQ(storage.read<double>(field(16)), (std::vector<double>{1.5, 2.75})) << layout;
        EXPECT_EQ(storage.read<float>(field(17)), (std::vector<float>{10, 20}));
        EXPECT_EQ(storage.read<double>(field(18)), (std::vector<double>{0.5, 0.25}));
        EXPECT_EQ(storage.read<std::uint32_t>(field(16)), (std::vector<std::uint32_t>{1, 2}));
        EXPECT_EQ(storage.read<std::uint32_t>(field(20)), (std::vector<std::uint32_t>{4294967293u, 4}));
        EXPECT_EQ(storage.read<double>(field(21)), (std::vector<double>{7, 8}));

        double untouched = 42.0;
        EXPECT_EQ(storage.length(field(19)), 0) << "no peak areas in this block";
        EXPECT_EQ(storage.readInto(field(19), &untouched), 1);
        EXPECT_EQ(untouched, 42.0);
    }
}

TEST_F(ArrayReading, TheCacheNamesEveryArrayOfASpectrum) {
    const auto locations = write({{.profile = std::vector<float>{1, 2}, .lines = LineData{.index = {{1}}}}, {}});
    ASSERT_TRUE(Storage(mainFile()));
    const std::pair<const char*, std::uint64_t> columns[] = {
        {"LineIndexId", 16}, {"LineIntensityId", 17}, {"LineIndexWidthId", 18},   {"LinePeakAreaId", 19},
        {"LineSnrId", 20},   {"LineMzId", 22},        {"ProfileIntensityId", 66}, {"ProfileMzId", 67}};
    for (const auto& [column, kind] : columns) {
        const std::uint64_t offset = kind < 66 ? locations[0].lines : locations[0].scan;
        EXPECT_EQ(id(column), arrayId(kind, offset)) << column;
        EXPECT_EQ(sql(std::string("SELECT ") + column + " FROM Spectra WHERE Id = 2"), "NULL") << column;
    }
}

class DamagedMainFile : public ArrayReading {
protected:
    DamagedMainFile()
        : m_locations(write({{.profile = std::vector<std::uint32_t>{1, 2, 3}},
                             {.profile = std::vector<std::uint32_t>{4, 5}, .lines = LineData{.index = {{1, 2}}}}})) {
        EXPECT_TRUE(Storage(mainFile()));
    }

    /// Overwrites bytes of the main file, whose size stays.
    void put(std::uint64_t offset, const std::string& bytes) const {
        fs::fstream file(mainFile(), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(offset));
        file << bytes;
    }

    std::vector<sample::SpectrumLocation> m_locations;
};

TEST_F(DamagedMainFile, WrongTypeNamesTheOffset) {
    put(m_locations[0].scan + 4, std::string("\x03\x10", 2));
    const Storage storage(mainFile());
    EXPECT_EQ(storage.failureOf(arrayId(66, m_locations[0].scan)),
              "QSF: expected resource type: 4097, got: 4099 current offset: " +
                  std::to_string(m_locations[0].scan + 44) + "; expected version: 49056, got: 49056");
}

TEST_F(DamagedMainFile, AHalfReadScanIsServedAgainAndNothingElseSuffers) {
    put(m_locations[0].scan + 20, std::string("\x63", 1));
    const Storage storage(mainFile());
    const std::uint64_t scan = arrayId(66, m_locations[0].scan);
    EXPECT_EQ(storage.failureOf(scan),
              "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities");
    EXPECT_EQ(storage.failureOf(scan), "ScanSpectrumBlock unsupported format 0");
    EXPECT_EQ(storage.length(scan), -1);
    EXPECT_EQ(lastError(), "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, ScanSpectrumBlock::GetNumberOfEntries");
    EXPECT_EQ(storage.read<double>(arrayId(66, m_locations[1].scan)), (std::vector<double>{4, 5}));
    EXPECT_EQ(Storage(mainFile()).failureOf(arrayId(66, 0)), "ScanSpectrumBlock unsupported format 0");
}

TEST_F(DamagedMainFile, AFalseCountTakesNoMemoryAndFailsTheStream) {
    put(m_locations[0].scan + 24, "\xFF\xFF\xFF\xFF");
    put(m_locations[1].lines + 24, "\xFF\xFF\xFF\xFF");
    {
        const Storage storage(mainFile());
        EXPECT_EQ(storage.read<double>(arrayId(66, m_locations[1].scan)), (std::vector<double>{4, 5}));
        EXPECT_EQ(storage.failureOf(arrayId(66, m_locations[0].scan)), "Error reading QSF files.");
        EXPECT_EQ(storage.failureOf(arrayId(66, m_locations[1].scan)), "Error reading QSF files.")
            << "a failed stream stays failed";
    }
    const Storage storage(mainFile());
    EXPECT_EQ(storage.length(arrayId(16, m_locations[1].lines)), 4294967295);
    EXPECT_EQ(storage.failureOf(arrayId(16, m_locations[1].lines)), "Error reading QSF files.");
}

TEST_F(DamagedMainFile, AScanInMemoryOutlivesAFailedStream) {
    put(m_locations[1].lines + 24, "\xFF\xFF\xFF\xFF");
    const Storage storage(mainFile());
    const std::uint64_t scan = arrayId(66, m_locations[0].scan);
    EXPECT_EQ(storage.length(scan), 3);
    EXPECT_EQ(storage.failureOf(arrayId(16, m_locations[1].lines)), "Error reading QSF files.");
    EXPECT_EQ(storage.read<double>(scan), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(storage.failureOf(arrayId(17, m_locations[1].lines)), "Error reading QSF files.");
}

TEST_F(DamagedMainFile, LineLayoutsOutsideTheFormat) {
    put(m_locations[1].lines + 20, std::string("\x04\x00", 2));
    const Storage storage(mainFile());
    EXPECT_EQ(storage.failureOf(arrayId(16, m_locations[1].lines)), "Shouldn't happen");
    EXPECT_EQ(storage.length(arrayId(17, m_locations[1].lines)), -1);
}

TEST_F(DamagedMainFile, IdsBeyondTheFile) {
    const Storage storage(mainFile());
    EXPECT_EQ(storage.failureOf(arrayId(16, (std::uint64_t{1} << 56) - 1)), "Error reading QSF files.");
}

}  // namespace
}  // namespace road
