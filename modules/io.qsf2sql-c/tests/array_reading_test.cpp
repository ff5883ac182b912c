#include "road.h"

#include <sample-analysis/packing.h>

namespace road {
namespace {

using namespace KVAN::io::QSF;

class ArrayReading : public Road {};

TEST_F(ArrayReading, ScansOfEveryElementTypeButSignedOnesAreServed) {
    const auto locations = write({{.profile = Counts{0, 7, 4294967295u}},
                                  {.profile = Floats{-1.75F, 2.5F, 3e9F}},
                                  {.profile = Doubles{-1.75, 16777217.0}},
                                  {.profile = Counts{}},
                                  {.profile = std::vector<std::int32_t>{-1, 2}},
                                  {.profile = std::vector<std::int64_t>{-1, 2, 3}}});
    const Storage storage(mainFile());
    const auto scan = [&](std::size_t index) { return arrayId(66, locations[index].scan); };
    EXPECT_EQ(storage.read<double>(scan(0)), (Doubles{0, 7, 4294967295.0}));
    EXPECT_EQ(storage.read<std::uint32_t>(scan(1)), (Counts{4294967295u, 2, 3000000000u}));
    EXPECT_EQ(storage.read<float>(scan(2)), (Floats{-1.75F, 16777216.0F}));
    EXPECT_EQ(storage.read<float>(scan(3)), Floats{});
    EXPECT_EQ(storage.length(scan(4)), 2);
    EXPECT_EQ(storage.failureOf(scan(4)), "ScanSpectrumBlock unsupported format 5");
    EXPECT_EQ(storage.length(scan(5)), 3);
    EXPECT_EQ(storage.failureOf(scan(5)), "ScanSpectrumBlock unsupported format 7");
}

// Counts of all sizes, with repeats, signs of differences and runs of zeros; long enough for every road in a decoder.
std::vector<std::uint32_t> counts() {
    std::vector<std::uint32_t> elements(70'000);
    for (std::uint32_t index = 0; index < elements.size(); ++index)
        elements[index] = index % 1000 < 300 ? 0 : index * 2654435761u >> index % 31;
    return elements;
}

TEST_F(ArrayReading, ScansOfEveryCompressorAsEveryType) {
    const Counts profile = counts();
    for (const auto compressor : {sample::Compressor::Vlc, sample::Compressor::Vli2, sample::Compressor::ZLib}) {
        SCOPED_TRACE(sample::guidOf(compressor));
        sample::ProfilePacker packer(compressor);
        const Floats floats(profile.begin(), profile.end());
        std::vector<SpectrumData> spectra = {
            {.profile = packer.pack(profile)}, {.profile = packer.pack(Counts())}, {.profile = profile}};
        const bool isZLib = compressor == sample::Compressor::ZLib;
        if (isZLib)
            spectra.push_back({.profile = packer.pack(floats)});
        const auto locations = write(spectra, {.compressors = {sample::guidOf(compressor)}});
        const Storage storage(mainFile());
        const auto scan = [&](std::size_t index) { return arrayId(66, locations[index].scan); };
        EXPECT_EQ(storage.read<std::uint32_t>(scan(0)), profile);
        EXPECT_EQ(storage.read<double>(scan(0)), Doubles(profile.begin(), profile.end()));
        EXPECT_EQ(storage.read<float>(scan(0)), floats);
        EXPECT_EQ(storage.length(scan(1)), 0);
        EXPECT_EQ(storage.read<std::uint32_t>(scan(2)), profile) << "a plain scan among packed ones";
        EXPECT_TRUE(!isZLib || storage.read<float>(scan(3)) == floats);
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
        EXPECT_EQ(storage.read<double>(field(16)), (Doubles{1.5, 2.75})) << layout;
        EXPECT_EQ(storage.read<float>(field(17)), (Floats{10, 20}));
        EXPECT_EQ(storage.read<double>(field(18)), (Doubles{0.5, 0.25}));
        EXPECT_EQ(storage.read<std::uint32_t>(field(16)), (Counts{1, 2}));
        EXPECT_EQ(storage.read<std::uint32_t>(field(20)), (Counts{4294967293u, 4}));
        EXPECT_EQ(storage.read<double>(field(21)), (Doubles{7, 8}));

        double untouched = 42.0;
        EXPECT_EQ(storage.length(field(19)), 0) << "no peak areas in this block";
        EXPECT_EQ(storage.readInto(field(19), &untouched), 1);
        EXPECT_EQ(untouched, 42.0);
    }
}

class DamagedMainFile : public ArrayReading {
protected:
    DamagedMainFile()
        : m_locations(
              write({{.profile = Counts{1, 2, 3}}, {.profile = Counts{4, 5}, .lines = LineData{.index = {{1, 2}}}}})) {
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
    put(m_locations[0].scan + 4, "\x03\x10");
    EXPECT_EQ(Storage(mainFile()).failureOf(arrayId(66, m_locations[0].scan)),
              "QSF: expected resource type: 4097, got: 4099 current offset: " +
                  std::to_string(m_locations[0].scan + 44) + "; expected version: 49056, got: 49056");
}

TEST_F(DamagedMainFile, AHalfReadScanIsServedAgainAndNothingElseSuffers) {
    put(m_locations[0].scan + 20, "\x63");
    const Storage storage(mainFile());
    const std::uint64_t scan = arrayId(66, m_locations[0].scan);
    EXPECT_EQ(storage.failureOf(scan),
              "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, reading scan: unknown data type for intensities");
    EXPECT_EQ(storage.failureOf(scan), "ScanSpectrumBlock unsupported format 0");
    EXPECT_EQ(storage.length(scan), -1);
    EXPECT_EQ(lastError(), "FAULT_BASE_UNKNOWN_DATA_TYPE, __FILE__,__LINE__, ScanSpectrumBlock::GetNumberOfEntries");
    EXPECT_EQ(storage.read<double>(arrayId(66, m_locations[1].scan)), (Doubles{4, 5}));
    EXPECT_EQ(Storage(mainFile()).failureOf(arrayId(66, 0)), "ScanSpectrumBlock unsupported format 0");
}

TEST_F(DamagedMainFile, HeadsOfLinesThatCouldNotBeReadAreTriedAgain) {
    put(m_locations[1].lines + 20, "\x04");  // no layout
    const Storage storage(mainFile());
    const std::string fault = storage.failureOf(arrayId(16, m_locations[1].lines));
    EXPECT_NE(fault, "");
    EXPECT_EQ(storage.failureOf(arrayId(16, m_locations[1].lines)), fault);
    EXPECT_EQ(storage.length(arrayId(16, m_locations[1].lines)), -1);
}

TEST_F(DamagedMainFile, AFalseCountTakesNoMemoryAndFailsTheStream) {
    put(m_locations[0].scan + 24, "\xFF\xFF\xFF\xFF");
    put(m_locations[1].lines + 24, "\xFF\xFF\xFF\xFF");
    const std::uint64_t bad = arrayId(66, m_locations[0].scan);
    const std::uint64_t good = arrayId(66, m_locations[1].scan);
    const std::uint64_t lines = arrayId(16, m_locations[1].lines);
    {
        const Storage storage(mainFile());
        EXPECT_EQ(storage.read<double>(good), (Doubles{4, 5}));
        EXPECT_EQ(storage.failureOf(bad), "Error reading QSF files.");
        EXPECT_EQ(storage.failureOf(good), "Error reading QSF files.") << "a failed stream stays failed";
    }
    const Storage storage(mainFile());
    EXPECT_EQ(storage.length(lines), 4294967295);
    EXPECT_EQ(storage.length(good), 2);
    EXPECT_EQ(storage.failureOf(lines), "Error reading QSF files.");
    EXPECT_EQ(storage.read<double>(good), (Doubles{4, 5})) << "a scan in memory outlives the stream";
    EXPECT_EQ(storage.failureOf(lines + arrayId(1, 0)), "Error reading QSF files.");
    EXPECT_EQ(Storage(mainFile()).failureOf(arrayId(17, 0) - 1), "Error reading QSF files.") << "beyond the file";
}

}  // namespace
}  // namespace road
