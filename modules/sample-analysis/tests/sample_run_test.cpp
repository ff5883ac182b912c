#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/storage.h>
#include <sample-analysis/sample_run.h>
#include <test-support/support.h>

#include <iomanip>
#include <numeric>
#include <sstream>

#include <gtest/gtest.h>

namespace kvan::sample {
namespace {

namespace fs = boost::filesystem;

/// The bytes of the three files of a run, one after the other.
std::string bytesOfRun(const SampleRunParameters& parameters) {
    const test::TemporaryDirectory directory;
    writeSampleRun(directory, parameters);
    std::string bytes;
    for (const char* name : {"analysis.qsf", "analysis.qsf_idx", "analysis.qsf_xtr"})
        bytes += test::readFile(directory / name);
    return bytes;
}

/// A line for each spectrum: number, segment, seconds, level, polarity, precursor, the last constants of its blob;
/// number of lines, first and last m/z, sum of intensities; sum of the profile. Then the sizes of the stores.
std::string summaryOf(const SampleRunParameters& parameters) {
    const test::TemporaryDirectory directory;
    const fs::path mainFile = writeSampleRun(directory, parameters);
    fs::path cache;
    bool isTemporary = false;
    const auto database = io::Qsf2Sql::getValidSQLiteCache(mainFile, cache, &isTemporary, {});
    io::Qsf2Sql storage(mainFile, std::nullopt, {});
    const auto read = [&](std::int64_t signedId) {
        const auto id = static_cast<std::uint64_t>(signedId);
        std::vector<double> values(storage.getArrayLength(id));
        storage.readArrayData(id, values.data());
        return values;
    };
    const auto sumOf = [](const auto& values) { return std::accumulate(values.begin(), values.end(), 0.0); };
    std::ostringstream text;
    text << std::setprecision(10);
    for (auto row = database->execQuery(
             "SELECT s.Id, Segment, Rt, MsLevel + 1, Polarity, (SELECT Mass FROM Steps WHERE TargetSpectrum = s.Id), "
             "LineMzId, LineIntensityId, ProfileIntensityId, Blob FROM Spectra s JOIN AcquisitionKeys k ON k.Id = "
             "AcquisitionKey JOIN Transformators t ON t.Id = TransformatorId");
         !row.eof(); row.nextRow()) {
        for (const int column : {0, 1, 2, 3, 4, 5})
            text << (row.fieldIsNull(column) ? "-" : row.fieldValue(column)) << ' ';
        double last[2];
        std::memcpy(last, row.blobField(9).last(16).data(), 16);
        text << last[0] << ' ' << last[1] << "; ";
        const auto masses = read(row.getInt64Field(6));
        text << masses.size() << ' ' << masses.front() << ' ' << masses.back() << ' ';
        text << sumOf(read(row.getInt64Field(7))) << "; ";
        text << (row.fieldIsNull(8) ? 0.0 : sumOf(read(row.getInt64Field(8)))) << '\n';
    }
    for (const char* name : {"analysis.qsf", "calibration.sqlite", "Calibrator.ami"})
        if (fs::exists(directory / name))
            text << name << ' ' << fs::file_size(directory / name) << '\n';
    return text.str();
}

TEST(SampleRun, EveryNumberIsTheSameOnEveryMachine) {
    const SampleRunParameters parameters{.spectra = 14,
                                         .calibration = SampleCalibration::TofCompensatedSeveral,
                                         .points = 2000,
                                         .maxLines = 30,
                                         .polarities = Polarities::Both,
                                         .segments = 3,
                                         .recalibrations = Recalibrations::Archive};
    EXPECT_EQ(summaryOf(parameters), test::readFile(TEST_FILES "/sample_run.txt"));
    const std::string bytes = bytesOfRun(parameters);
    EXPECT_EQ(bytes, bytesOfRun(parameters));
    SampleRunParameters otherSeed = parameters;
    otherSeed.seed = 2;
    EXPECT_NE(bytes, bytesOfRun(otherSeed));
}

TEST(SampleRun, RunsOfAllShapesEnd) {
    for (auto calibration = SampleCalibration::TofLinear; calibration <= SampleCalibration::Psd;
         calibration = static_cast<SampleCalibration>(static_cast<int>(calibration) + 1)) {
        for (const std::uint32_t spectra : {0U, 1U, 12U})
            EXPECT_FALSE(bytesOfRun({.spectra = spectra,
                                     .calibration = calibration,
                                     .points = 2,
                                     .profiles = Profiles::All,
                                     .floatProfiles = true,
                                     .maxLines = 0,
                                     .fragmentsPerSurvey = 0,
                                     .segments = 20})
                             .empty());
    }
    const auto failure = [](const SampleRunParameters& parameters) {
        return test::failureOf<std::invalid_argument>([&] { bytesOfRun(parameters); });
    };
    const std::string noAxis = "No m/z range or too few data points.";
    EXPECT_EQ(failure({.points = 1}), noAxis);
    EXPECT_EQ(failure({.mzLower = 500.0, .mzUpper = 500.0}), noAxis);
    EXPECT_EQ(failure({.mzLower = 0.0}), noAxis);
    EXPECT_EQ(failure({.segments = 0}), "A run needs a segment and peptides.");
    EXPECT_EQ(failure({.coelutingPeptides = 0.0}), "A run needs a segment and peptides.");
}

}  // namespace
}  // namespace kvan::sample
