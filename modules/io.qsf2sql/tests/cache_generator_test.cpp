#include "generated_cache.h"

#include <qsf2sql/errors.h>

#include <boost/math/policies/error_handling.hpp>

namespace kvan::io {
namespace {

using namespace sample;
using namespace KVAN::io::QSF;

using CacheGeneratorTest = GeneratedCache;

const std::string g_guid = "4f1ea0cb-5a6a-43ed-9562-d6d873034577";
constexpr const char* g_acquired = "SELECT MzAcqRangeLower, MzAcqRangeUpper FROM Spectra";

LineData oneLine() {
    return {.index = {{1.0}}};
}

SpectrumData spectrumOf(const QuickInfo& info) {
    return {.lines = oneLine(), .info = info};
}

TEST_F(CacheGeneratorTest, SchemaIsTheFormatsToTheLetter) {
    write({});
    generate();
    EXPECT_EQ(rows("SELECT group_concat(sql || char(10), '') FROM sqlite_master WHERE sql IS NOT NULL"),
              test::readFile(TEST_FILES "/cache_schema.sql"));
    EXPECT_EQ(rows("SELECT * FROM Spectra"), "");
}

TEST_F(CacheGeneratorTest, EveryRowOfASmallRun) {
    AnalysisWriter writer(directory, {.timebase = 500,
                                      .time = {10000, 1, 1, 0, 20, 30, 125, -90},
                                      .description = AnalysisDescription{.instrumentName = "I",
                                                                         .operatorName = "O",
                                                                         .acquisitionSoftware = "S",
                                                                         .acquisitionSoftwareVersion = "1.2",
                                                                         .acquisitionMethod = "M",
                                                                         .sampleName = "Na",
                                                                         .instrumentSourceType = 11,
                                                                         .instrumentFamily = 7,
                                                                         .serialFallback = 2.9F,
                                                                         .instrumentRevision = 3},
                                      .compressors = {"4F1EA0CB-5A6A-43ED-9562-D6D873034577"}});
    const auto ms1 = writer.addSpectrum({.profile = std::vector<std::uint32_t>{1},
                                         .lines = oneLine(),
                                         .info = {.retentionTime = 4000,
                                                  .acquiredLower = 99.5F,
                                                  .acquiredUpper = 1200.25F,
                                                  .maxIntensity = 7.5F,
                                                  .sumIntensity = 30.25F,
                                                  .acquisitionMode = 2,
                                                  .calibration = linearBlob(0.5, 1.0)}});
    writer.addSegment();
    const auto ms3 = writer.addSpectrum(
        {.profile = std::vector<float>{1.0F},
         .info = {.acquisitionMode = 2, .scanMode = 2, .masses = {445.5F, 120.25F}, .calibration = {}}});
    writer.addSpectrum(
        {.info = {
             .retentionTime = 1, .sumIntensity = 1.0F, .acquisitionMode = 2, .calibration = linearBlob(0.5, 1.0)}});
    writer.finish();
    generate(true, {"Wanted"});

    EXPECT_EQ(rows("SELECT Id, Rt, Segment, AcquisitionKey, Parent, MzAcqRangeLower, MzAcqRangeUpper, SumIntensity, "
                   "MaxIntensity, TransformatorId FROM Spectra"),
              "1|2.0|1|1|-|100|1201|30.25|7.5|1 2|0.0|2|2|1|-|-|0.0|0.0|2 3|0.0005|2|1|-|-|-|-|-|3");
    EXPECT_EQ(rows("SELECT LineIndexId >> 56, LineIntensityId >> 56, LineIndexWidthId >> 56, LinePeakAreaId >> 56, "
                   "LineSnrId >> 56, LineMzId >> 56, ProfileIntensityId >> 56, ProfileMzId >> 56 FROM Spectra"),
              "16|17|18|19|20|22|66|67 -|-|-|-|-|-|66|67 -|-|-|-|-|-|-|-");
    const std::string lines = std::to_string(ms1.lines),
                      scans = std::to_string(ms1.scan) + ' ' + std::to_string(ms3.scan);
    for (const std::string column : {"LineIndexId", "LineIntensityId", "LineIndexWidthId", "LinePeakAreaId",
                                     "LineSnrId", "LineMzId", "ProfileIntensityId", "ProfileMzId"})
        EXPECT_EQ(rows("SELECT " + column + " & 0xFFFFFFFFFFFFFF FROM Spectra ORDER BY Id"),
                  column[0] == 'L' ? lines + " - -" : scans + " -")
            << column;
    EXPECT_EQ(rows("SELECT * FROM Steps"), "2|0|1|1|1|445.5 2|1|1|1|2|120.25");
    EXPECT_EQ(rows("SELECT Id, hex(Blob) FROM Transformators"),
              "1|02100000000000000000E03F000000000000F03F 2|FF000000 3|02100000000000000000E03F000000000000F03F");
    EXPECT_EQ(rows("SELECT * FROM AcquisitionKeys"), "1|0|0|2|0 2|0|2|2|2");
    EXPECT_EQ(rows("SELECT Key || '=' || Value FROM Properties ORDER BY rowid"),
              "SchemaType=Qsf2Sql AcquisitionSoftware=S AcquisitionSoftwareVendor=Zentrik "
              "AcquisitionSoftwareVersion=1.2 InstrumentVendor=Zentrik InstrumentFamily=7 InstrumentName=I "
              "InstrumentRevision=3 InstrumentSourceType=11 OperatorName=O Description= SampleName=Na "
              "AcquisitionMethod=M AcquisitionDateTime=9999-12-31T22:50:30.125-01:30 InstrumentSerialNumber=-1.2");
    const auto size = [&](const char* extension) {
        return std::to_string(boost::filesystem::file_size(file(extension)));
    };
    EXPECT_EQ(rows("SELECT SchemaVersion, Compressor, QSFSize, IDXSize, XTRSize, AllVariables FROM Info"),
              "1.6.2c|" + g_guid + "|" + size(".qsf") + "|" + size(".qsf_idx") + "|" + size(".qsf_xtr") + "|1");
    EXPECT_EQ(rows("SELECT * FROM RequestedVariables"), "Wanted");
    EXPECT_EQ(rows("SELECT Spectrum, count(*), count(Value) FROM Variables GROUP BY Spectrum"), "1|16|0 2|16|0 3|16|0");
}

TEST_F(CacheGeneratorTest, ParentsAndStepsFollowTheInstrumentFamily) {
    std::vector<SpectrumData> spectra;
    for (const auto& masses : {std::vector<float>{5.0F}, {}, {6.0F}, {7.0F, 8.0F}, {}, {9.0F}})
        spectra.push_back(spectrumOf({.masses = masses}));
    for (const std::uint16_t family : std::initializer_list<std::uint16_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 65535}) {
        write(spectra, {.description = AnalysisDescription{.instrumentFamily = family}});
        EXPECT_EQ(warnings(),
                  "Encountered MS^n (n>1) spectrum without preceding MS^1 spectrum. Leaving 'Spectra.Parent' empty; "
                  "not printing more warnings of this type.\n");
        const bool isAuto = family == 1 || family == 2 || (family >= 6 && family <= 9);
        EXPECT_EQ(rows("SELECT Parent FROM Spectra"), isAuto ? "- - 2 2 - 5" : "- - - - - -") << family;
        EXPECT_EQ(rows("SELECT * FROM Steps"),
                  isAuto ? "1|0|1|1|1|5.0 3|0|1|1|1|6.0 4|0|1|1|1|7.0 4|1|1|1|2|8.0 6|0|1|1|1|9.0"
                         : "1|0|-1|-1|-1|5.0 3|0|-1|-1|-1|6.0 4|0|-1|-1|-1|7.0 4|1|-1|-1|-1|8.0 6|0|-1|-1|-1|9.0");
    }
}

TEST_F(CacheGeneratorTest, ReferencesByKeyWithTheFallbackToMs1) {
    const auto reference = [](double scale, std::uint8_t scanMode, std::uint8_t msLevel) {
        return referenceBlob(scale, 1, scanMode, 2, msLevel);
    };
    // By scale: 1 and 2 for MS^1, 3 for MS^2; 4 comes too late, 5 is not used; the last two are none.
    const std::vector<Bytes> references{reference(3, 2, 1), reference(1, 0, 0), reference(2, 3, 0), reference(4, 0, 0),
                                        reference(5, 1, 0), linearBlob(0, 1),   {5, 0, 0, 0}};
    using Byte = std::uint8_t;
    const std::tuple<Byte, Byte, Byte, std::string> cases[] = {
        {1, 2, 1, "300|1200"},  // its own
        {1, 2, 2, "100|400"},   // MS^1, scan mode 2 as 0
        {1, 3, 1, "200|800"},   // MS^1, other scan modes as they are
        {1, 2, 0, "10|20"},     // MS^1 does not fall back
        {0, 0, 0, "10|20"},     // another polarity
    };
    std::string expected;
    std::vector<SpectrumData> spectra;
    for (const auto& [polarity, scanMode, msLevel, acquired] : cases) {
        spectra.push_back(spectrumOf({.acquiredLower = 10.0F,
                                      .acquiredUpper = 20.0F,
                                      .polarity = polarity,
                                      .acquisitionMode = 2,
                                      .scanMode = scanMode,
                                      .msLevel = msLevel,
                                      .calibration = linearBlob(0.0, 1.0)}));
        expected += acquired + ' ';
    }
    write(spectra, {.calibrations = references});
    EXPECT_EQ(warnings(),
              "Skipping reference calibration without measurement mode.\n"
              "Skipping reference calibration without transformator.\n"
              "Encountered MS^n (n>1) spectrum without preceding MS^1 spectrum. Leaving 'Spectra.Parent' empty; "
              "not printing more warnings of this type.\n");
    EXPECT_EQ(rows(g_acquired) + " ", expected);
    // The key of scale 1, MS^1 in scan mode 0, belongs to no spectrum.
    EXPECT_EQ(rows("SELECT r.Id, r.AcquisitionKey, r.TransformatorId, length(t.Blob) FROM ReferenceTransformators r "
                   "JOIN Transformators t ON t.Id = r.TransformatorId"),
              "1|-1|6|48 2|-1|7|48 3|1|8|48");
    EXPECT_EQ(rows("SELECT count(*) FROM AcquisitionKeys"), "5");
}

TEST_F(CacheGeneratorTest, AcquiredRangeIsRoundedAndNeverEmpty) {
    constexpr const char* roundingError = nullptr;
    const std::tuple<Bytes, float, float, const char*> cases[] = {
        {linearBlob(0.0, 1.0), 0.5F, 2.5F, "1|3"},
        {linearBlob(0.0, 1.0), -0.5F, 0.25F, "-1|0"},
        {linearBlob(0.0, 1.0), 7.0F, 7.25F, "7|8"},
        {linearBlob(0.0, -1.0), 7.0F, 9.0F, "-7|-6"},
        {linearBlob(0.0, 1.0), 0.0F, 2147483648.0F, roundingError},
        {linearBlob(2147483647.0, 0.0), 0.0F, 1.0F, roundingError},  // no number above the lower end
        {linearBlob(0.0, INFINITY), 1.0F, 2.0F, roundingError},
        {linearBlob(NAN, 1.0), 1.0F, 2.0F, roundingError},
        {{5, 0, 0, 0}, 1.0F, 2.0F, "-|-"},
        {{1, 0, 0, 0, 9}, 1.0F, 2.0F, "-|-"},  // cannot be read
    };
    for (const auto& [calibration, lower, upper, acquired] : cases) {
        write({spectrumOf(
            {.acquiredLower = lower, .acquiredUpper = upper, .sumIntensity = 3.0F, .calibration = calibration})});
        if (acquired == roundingError) {
            EXPECT_THROW(generate(), boost::math::rounding_error) << lower;
            continue;
        }
        generate();
        EXPECT_EQ(rows(g_acquired), acquired) << lower;
        EXPECT_EQ(rows("SELECT SumIntensity FROM Spectra"), "3.0");
    }
}

TEST_F(CacheGeneratorTest, CalibrationsThatStopTheGeneration) {
    write({spectrumOf({.acquiredLower = 9.0F, .calibration = calibrationBlob(1, {0, 1, 0, 1e12, -1})})});
    EXPECT_EQ(failure<std::logic_error>(),
              "complex valued solution in computation due to invalid calibration constants/value range");
    write({}, {.calibrations = {{1, 0, 0, 0, 9}}});
    EXPECT_NE(failure<std::runtime_error>().find("READ_NUMBER_OF_BYTES"), std::string::npos);
}

TEST_F(CacheGeneratorTest, IndexEntriesInAnyOrder) {
    write({});
    ExtraFileWriter extra(file(".qsf_xtr"));
    for (const std::uint32_t spectrum : {0U, 1U, 5U, 8U})
        extra.entry(spectrum, {.sumIntensity = 1.0F});
    extra.finish();
    IndexFileWriter index(file(".qsf_idx"));
    index.entry(RESTYPE_SCAN_SPECTRUM, 0, 77);  // of no spectrum
    index.entry(RESTYPE_SPECTRUM_CONDITION, 7, 0);
    index.entry(RESTYPE_SPECTRUM_CONDITION, 4, 0);
    index.entry(RESTYPE_LINE_SPECTRUM, 0, 5);
    index.entry(RESTYPE_SEGMENT_CONDITION, 0, 0);  // for those after it
    index.entry(RESTYPE_LINE_SPECTRUM, 0, 6);      // the later one counts
    index.entry(RESTYPE_SPECTRUM_CONDITION, 0, 0);
    index.entry(RESTYPE_SEGMENT_CONDITION, 0, 0);
    for (const std::uint16_t silent : {INSTRUMENT_INFO, RESTYPE_CONDITION_2003, ANALYSIS_HEADER, RESTYPE_4004})
        index.entry(silent, 0, 0);
    index.entry(RESTYPE_SPECTRUM_CONDITION, 0xFFFFFFFF, 0);
    index.entry(0xABCD, 0x1F, 0);
    index.finish();
    EXPECT_EQ(warnings(),
              "Skipping unexpected data in FILE_CONTAINER_INDEX_ENTRY with: Type = 0xabcd, EntryIndexNo = 0x1f\n");
    EXPECT_EQ(rows("SELECT Id, Segment, LineIndexId & 255, ProfileMzId, SumIntensity, TransformatorId FROM Spectra"),
              "1|1|-|-|-|2 5|-|6|-|1.0|3 8|-|-|-|-|4 4294967296|2|-|-|-|-");
}

TEST_F(CacheGeneratorTest, UnexpectedBlocksAreLoggedAndPassedOver) {
    write({});
    const Bytes strange = makeBlock(0x7777, {});
    Bytes head = IndexFileWriter::standardHead();
    head.insert(head.begin(), strange.begin(), strange.end());
    Bytes container(12 + 24 + 16, 0);  // 4 bytes more than an entry needs
    container[4] = 0x01, container[5] = 0x50, container[8] = 52, container[12] = 0x02, container[13] = 0x20;
    head.insert(head.end(), container.begin(), container.end());
    IndexFileWriter(file(".qsf_idx"), head).finish();
    ExtraFileWriter(file(".qsf_xtr"), strange).finish();
    const std::string warning = "Skipping unexpected data in RESOURCE_HEADER with: Type = 0x7777\n";
    EXPECT_EQ(warnings(), warning + "IDX: contained data size non-zero, expected zero.\n" + warning);
    EXPECT_EQ(rows("SELECT Id FROM Spectra"), "1");
}

TEST_F(CacheGeneratorTest, MainFileUpToItsTwoImportantBlocks) {
    // The order of the blocks (c, C compression info without and with entry, h header, i instrument), its second text.
    const std::tuple<std::string, const char*, const char*> cases[] = {{"hic", "12", "7.12"},
                                                                       {"ich", "12.3", "12.3"},
                                                                       {"ihc", "-1", "-1.5"},
                                                                       {"chi", "12", "-1.5"},
                                                                       {"cChi", "12", "-1.5"}};
    write({});
    for (const auto& [order, textB, serial] : cases) {
        MainFileWriter main(file(".qsf"));
        for (const char block : order) {
            if (block == 'h')
                main.analysisHeader({.description = AnalysisDescription{.serialFallback = 5.5F}});
            else if (block == 'i')
                main.instrumentInfo({"7", textB});
            else
                main.compressionInfo(std::vector<std::string>(block == 'C' ? 1 : 0, g_guid));
            main.block(0x1234, {1, 2, 3});
        }
        main.finish();
        generate();
        EXPECT_EQ(rows("SELECT Value FROM Properties WHERE Key = 'InstrumentSerialNumber'"), serial) << order;
        EXPECT_EQ(rows("SELECT length(Compressor) FROM Info"), order == "cChi" ? "36" : "0");
    }
}

TEST_F(CacheGeneratorTest, ConditionsOfTheMainFile) {
    using Write = void (*)(MainFileWriter&);
    constexpr const char* numbering = "Expected consecutive numbering of segments starting at one.";
    constexpr const char* otherSegment = "File format problem: expected different segment.";
    const std::pair<Write, const char*> cases[] = {
        {[](MainFileWriter& main) { main.segmentCondition(1), main.segmentCondition(2), main.spectrumCondition(2, 1); },
         ""},
        {[](MainFileWriter& main) { main.segmentCondition(0); }, numbering},
        {[](MainFileWriter& main) { main.segmentCondition(1), main.segmentCondition(3); }, numbering},
        {[](MainFileWriter& main) { main.spectrumCondition(0, 1); }, otherSegment},
        {[](MainFileWriter& main) { main.segmentCondition(1), main.spectrumCondition(2, 1); }, otherSegment},
        {[](MainFileWriter& main) { main.segmentCondition(1), main.segmentCondition(2), main.spectrumCondition(1, 1); },
         otherSegment},
        {[](MainFileWriter& main) { main.block(0x0008, {}), main.segmentCondition(9); }, ""},
        {[](MainFileWriter& main) { main.block(0x000A, {}), main.segmentCondition(9); }, ""},
        {[](MainFileWriter& main) {
             main.segmentCondition(9, makeBlock(0x0001, {16, 0, 0, 0, 1, 0, 0, 0}));
         },
         "Error reading QSF files."},  // they are read before their numbers are tested
    };
    write({});
    for (const auto& run : cases) {
        writeMainFile(run.first);
        EXPECT_EQ(failure<std::runtime_error>(), run.second) << &run - cases;
    }
}

TEST_F(CacheGeneratorTest, FilesThatAreRefused) {
    using Spoil = void (*)(const CacheGeneratorTest&);
    const std::pair<Spoil, const char*> cases[] = {
        {[](const auto& test) { test.write({}, {.compressors = {}}); }, ""},
        {[](const auto& test) {
             test.write({}, {.compressors = {g_guid, g_guid}});
         },
         "Don't know how to handle more than one COMPRESSION INFO ENTRY."},
        {[](const auto& test) { test.write({}, {.description = std::nullopt}); },
         "Analysis description missing from main QSF file."},
        {[](const auto& test) { MainFileWriter(test.file(".qsf")).finish(); },
         "Important blocks missing from main QSF file."},
        {[](const auto& test) {
             IndexFileWriter index(test.file(".qsf_idx"));
             index.entry(RESTYPE_LINE_SPECTRUM, 0, std::uint64_t{1} << 56);
             index.finish();
         },
         "Offset >= (1<<56)."},
    };
    for (const auto& [spoil, text] : cases) {
        write({});
        spoil(*this);
        EXPECT_EQ(failure<Qsf2SqlFileFormatError>(), text);
    }
    write({}, {.time = {.month = 2, .day = 30}});
    EXPECT_EQ(failure<std::out_of_range>(), "Day of month is not valid for year");
    for (const char* extension : {".qsf", ".qsf_idx", ".qsf_xtr"}) {
        write({});
        boost::filesystem::remove(file(extension));
        EXPECT_EQ(failure<Qsf2SqlCannotOpenFileError>(), "Can't open file: " + file(extension).string());
    }
}

TEST_F(CacheGeneratorTest, EachFileCutAnywhereIsAReadError) {
    write({spectrumOf({.calibration = linearBlob(0, 1)}), spectrumOf({.masses = {5}, .calibration = linearBlob(0, 1)})},
          {.description = AnalysisDescription{.sampleName = "Yeast"},
           .variables = {{.permanentName = "A"}},
           .calibrations = {referenceBlob(1.0, 0, 0, 0, 0)},
           .instrument = InstrumentInfo{"7", "12"}});
    generate();
    // The bytes after the block that ends the conditions are not read.
    for (const auto& [extension, unread] : {std::pair(".qsf", 8U), {".qsf_idx", 0U}, {".qsf_xtr", 0U}}) {
        boost::filesystem::copy_file(file(extension), directory / "whole");
        for (std::uint64_t size = boost::filesystem::file_size(file(extension)) - unread; size-- > 0;) {
            boost::filesystem::resize_file(file(extension), size);
            ASSERT_EQ(failure<Qsf2SqlFileFormatError>(), "Error reading QSF files.") << extension << " " << size;
        }
        boost::filesystem::rename(directory / "whole", file(extension));
    }
}

}  // namespace
}  // namespace kvan::io
