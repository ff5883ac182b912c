#include <sample-analysis/analysis_writer.h>
#include <sample-analysis/archive_writer.h>
#include <sample-analysis/calibration_database_writer.h>
#include <sample-analysis/packing.h>
#include <test-support/support.h>

#include <gtest/gtest.h>

namespace kvan::sample {
namespace {

namespace fs = boost::filesystem;

class AnalysisWriterTest : public ::testing::Test {
protected:
    std::string hexOf(const char* name) const { return boost::algorithm::hex(test::readFile(m_directory / name)); }

    const test::TemporaryDirectory m_directory;
};

std::string zeros(int count) {
    return std::string(2 * static_cast<std::size_t>(count), '0');
}

std::string withoutBlanks(std::string text) {
    std::erase(text, ' ');
    return text;
}

constexpr const char* g_end = "08000000 0350A0BF";

TEST_F(AnalysisWriterTest, MainFileByHand) {
    AnalysisHeaderData header{
        .timebase = 500,
        .time = {2015, 3, 4, 10, 20, 30, 125, -90},
        .description =
            AnalysisDescription{
                .operatorName = "Jo", .sampleName = "Yeast", .instrumentFamily = 7, .serialFallback = 2.0F},
        .variables = {{.variable = 3,
                       .elementType = KVAN::io::QSF::VarTabDescEntryRecord::Double,
                       .permanentName = "A"}},
        .calibrations = {{1, 0, 0, 0, 9}},
        .instrument = InstrumentInfo{"7", "12"},
        .compressors = {"4F1EA0CB-5A6A-43ED-9562-D6D873034577"}};
    AnalysisWriter writer(m_directory, header);
    const SpectrumLocation location = writer.addSpectrum({.profile = std::vector<std::uint32_t>{1, 2},
                                                          .lines = LineData{.index = {{1.5}}, .indexWidth = {{2.0}}},
                                                          .pool = makeBlock(0x0006, {})});
    writer.finish();

    const std::string expected =
        "24000000 0340A0BF 0C00 01 00 1800 0000 00000000 CBA01E4F 6A5A ED43 9562D6D873034577"  //
        "2B000000 2400A0BF" +
        zeros(8) + "28000000 00000000 29000000 00000000 0100 0000 0200 0000 37 3132" +  //
        "B5000000 0130A0BF" + zeros(8) + "3C000000" + zeros(12) + "F4010000" + zeros(12) +
        "04 03 DF07 A6FF 7D00 1E 14 0A 00" +  //
        "47000000 0330A0BF" + zeros(8) + "40000000" + zeros(20) + "42000000 00000000 0000 00 00 0700 0000 00000040 00" +
        zeros(3) + "4A6F 5965617374" +                                               //
        "21000000 0230A0BF 0C00 0100 1500 0300 0A00 0000 1400" + zeros(10) + "41" +  //
        "11000000 0600A0BF 00000000 01000000 09" +                                   //
        "14000000 0120A0BF" + zeros(8) + "01000000" +                                //
        "30000000 0220A0BF 28000000 01000000 01000000" + zeros(20) + "08000000 0600A0BF" + "34000000 0110A0BF" +
        zeros(12) + "06 04 00 00 02000000" + zeros(16) + "01000000 02000000" + "68000000 0210A0BF" + zeros(12) +
        "03000000 01000000" + zeros(24) +  //
        "00000000 28000000 00000000 30000000" + zeros(20) + "000080BF 000000000000F83F 00000040" + "08000000 0800A0BF" +
        g_end;
    EXPECT_EQ(hexOf("analysis.qsf"), withoutBlanks(expected));
    EXPECT_EQ(location.id, 1U);
    EXPECT_EQ(location.condition, 0x24U + 0x2B + 0xB5 + 0x14);
    EXPECT_EQ(location.scan, location.condition + 0x30);
    EXPECT_EQ(location.lines, location.scan + 0x34);
}

TEST_F(AnalysisWriterTest, SideFilesByHand) {
    AnalysisWriter writer(m_directory, {.description = {}});
    writer.addSegment();
    writer.addSegment();
    writer.addSpectrum({});
    writer.addSpectrum({.profile = std::vector<double>{},
                        .info = {.retentionTime = 0x0102030405060708,
                                 .acquiredUpper = 1.5F,
                                 .sumIntensity = 4.0F,
                                 .polarity = 1,
                                 .acquisitionMode = 2,
                                 .scanMode = 3,
                                 .masses = {0.5F},
                                 .calibration = {1, 0, 0, 0, 0xAB}}});
    writer.finish();

    const auto entry = [](const char* type, const char* number, const char* offset) {
        return "00000000 0150A0BF 30000000" + std::string(type) + zeros(10) + number + offset + "00000000" + zeros(12);
    };
    // The main file: 12 and 60 bytes of heads, two segments of 20, conditions of 40 and a scan.
    EXPECT_EQ(hexOf("analysis.qsf_idx"),
              withoutBlanks("08000000 0140A0BF 08000000 0170A0BF 08000000 0270A0BF" +
                            entry("0130", "00000000", "0C000000") + entry("0120", "00000000", "48000000") +
                            entry("0120", "01000000", "5C000000") + entry("0220", "00000000", "70000000") +
                            entry("0220", "01000000", "98000000") + entry("0110", "01000000", "C0000000") + g_end));
    const std::string head = "00000000 0C00" + zeros(6);
    EXPECT_EQ(hexOf("analysis.qsf_xtr"),
              withoutBlanks("08000000 0140A0BF 08000000 0370A0BF 08000000 0470A0BF" +  //
                            ("00000000 0150A0BF 54000000" + head) + "3C00 0000 0000 0000" + zeros(12) + "01000000" +
                            zeros(32) + "FF000000" +  //
                            ("00000000 0150A0BF 59000000" + head) +
                            "4100 3C00 4000 0000 0807060504030201 00000000 02000000 00000000 00000000 0000C03F" +
                            zeros(8) + "00008040 01020103" + zeros(4) + "01000000 0000003F AB" + g_end));
}

TEST_F(AnalysisWriterTest, EveryElementTypeOfAScan) {
    const struct {
        ScanData data;
        const char* hex;  // size of the block, codes and count, elements
    } cases[] = {
        {std::vector<std::int32_t>{-2}, "30000000 05040000 01000000 FEFFFFFF"},
        {std::vector<std::uint32_t>{}, "2C000000 06040000 00000000"},
        {std::vector<std::int64_t>{-2}, "34000000 07080000 01000000 FEFFFFFFFFFFFFFF"},
        {std::vector<float>{1.0F, 1.5F}, "34000000 09040000 02000000 0000803F 0000C03F"},
        {std::vector<double>{1.5}, "34000000 0A080000 01000000 000000000000F83F"},
        {PackedVector{KVAN::io::QSF::ELEMENT_INT32, {7, 8, 9}}, "2F000000 00000500 03000000 070809"},
    };
    std::string expected;
    MainFileWriter writer(m_directory / "scans");
    for (const auto& [data, hex] : cases) {
        EXPECT_EQ(writer.scan(data), expected.size() / 2);
        const std::string text = withoutBlanks(hex);
        expected += text.substr(0, 8) + "0110A0BF" + zeros(12) + text.substr(8, 16) + zeros(16) + text.substr(24);
    }
    writer.finish();
    EXPECT_EQ(hexOf("scans"), expected + withoutBlanks(g_end));
}

TEST_F(AnalysisWriterTest, EveryLayoutOfLines) {
    using KVAN::io::QSF::LineLayout;
    const LineData::Field one = {{1.5}};
    const struct {
        LineData data;
        const char* size;
        const char* layoutAndCount;
        std::string rest;
    } cases[] = {
        {{.layout = LineLayout::LINES_FLOAT_FLOAT, .index = one, .field21 = one},
         "64000000",
         "01000000 01000000",
         "28000000" + zeros(16) + "2C000000" + zeros(8) + "000080BF 0000C03F 0000C03F"},
        {{.layout = LineLayout::LINES_DOUBLE_DOUBLE, .intensity = one},
         "68000000",
         "02000000 01000000",
         "00000000 2C000000" + zeros(24) + "000000000000F0BF 000000000000F83F"},
        {{.layout = LineLayout::LINES_DOUBLE_FLOAT, .peakArea = std::vector<double>{}, .snr = std::vector<double>{}},
         "5C000000",
         "03000000 00000000",
         zeros(12) + "28000000 28000000" + zeros(12) + "000080BF"},
    };
    std::string expected;
    MainFileWriter writer(m_directory / "lines");
    for (const auto& [data, size, layoutAndCount, rest] : cases) {
        EXPECT_EQ(writer.lines(data), expected.size() / 2);
        expected += withoutBlanks(size + ("0210A0BF" + zeros(12)) + layoutAndCount + zeros(24) + zeros(4) + rest);
    }
    writer.finish();
    EXPECT_EQ(hexOf("lines"), expected + withoutBlanks(g_end));
}

TEST_F(AnalysisWriterTest, RefusesWhatTheFormatCannotSay) {
    AnalysisWriter writer(m_directory);
    const auto failureOf = [&](const SpectrumData& spectrum) {
        return test::failureOf([&] { writer.addSpectrum(spectrum); });
    };
    EXPECT_EQ(failureOf({.lines = LineData{.index = {{1.0, 2.0}}, .snr = {{1.0}}}}),
              "Line fields of different lengths.");
    EXPECT_EQ(failureOf({.info = {.calibration = Bytes(2)}}), "Calibration without its head.");
    EXPECT_EQ(failureOf({.info = {.calibration = Bytes(70000)}}), "bad numeric conversion: positive overflow");
    EXPECT_EQ(test::failureOf([&] { MainFileWriter(m_directory / "x.qsf").compressionInfo({"no guid"}); }),
              "invalid uuid string");
    EXPECT_THROW(AnalysisWriter(m_directory / "analysis.qsf"), fs::filesystem_error);
    fs::create_directories(m_directory / "taken" / "analysis.qsf");
    const fs::path taken = m_directory / "taken" / "analysis.qsf";
    EXPECT_EQ(test::failureOf([&] { AnalysisWriter(m_directory / "taken"); }), "Can't write file: " + taken.string());
    fs::create_directories(m_directory / "taken" / g_archiveName);
    EXPECT_EQ(test::failureOf([&] { writeArchive(m_directory / "taken", {}); }),
              "Can't write file: " + (m_directory / "taken" / g_archiveName).string());
    EXPECT_EQ(test::failureOf([] { guidOf(Compressor::None); }), "No compressor, no GUID.");
    CalibrationDatabaseWriter database(m_directory);
    EXPECT_EQ(test::failureOf([&] {
                  database.addFrame(1, {.numbers = {{}, {}, {}, {}, {}, {}, {}, {}, {}, {}}});
              }),
              "A calibration has nine numbers at most.");
    MainFileWriter full("/dev/full");
    EXPECT_EQ(test::failureOf([&] { full.finish(); }), "Can't write file: /dev/full");
}

}  // namespace
}  // namespace kvan::sample
