#include "road.h"

#include <sample-analysis/archive_writer.h>
#include <sample-analysis/calibration_database_writer.h>
#include <sample-analysis/sample_run.h>

#include <atomic>

namespace road {
namespace {

using sample::CalibrationDatabaseWriter;
using sample::CalibrationState;

/// Masses of index 1 in these tests: the slope of the straight line or the ion trap that is in force.
constexpr double g_acquired = 1;
constexpr double g_archived = 2;
constexpr double g_frame = 3;
constexpr double g_positive = 4;
constexpr double g_negative = 5;

class Recalibrated : public Road {
protected:
    /// Spectra of one line at index 1, with these polarities.
    void writeAnalysis(const std::vector<std::uint8_t>& polarities) const {
        std::vector<SpectrumData> spectra;
        for (const std::uint8_t polarity : polarities)
            spectra.push_back({.profile = Counts{1, 2},
                               .lines = LineData{.index = {{1.0}}},
                               .info = {.polarity = polarity, .calibration = calibrationBlob(4098, {0, g_acquired})}});
        write(spectra);
    }

    void writeArchive(std::size_t spectra) const {
        sample::CalibratorArchive archive;
        archive.lockMasses.spectra.resize(
            spectra, {.calibrator = sample::ArchivedCalibrator{.blob = calibrationBlob(4098, {0, g_archived})}});
        sample::writeArchive(m_directory, archive);
    }

    static sample::MzCalibration trap(double slope) { return {.model = 3, .numbers = {0.0, slope, 1.0, 0.0}}; }

    /// One state; frame calibrators for the first `frames` spectra, or references.
    void writeDatabase(int frames, CalibrationState state = {}) const {
        CalibrationDatabaseWriter writer(m_directory);
        state.key = "the state's";
        state.hasFrameCalibrators = frames > 0;
        writer.addState(state);
        for (int frame = 1; frame <= frames; ++frame)
            writer.addFrame(frame, trap(g_frame));
        writer.finish();
    }

    void databaseSql(const std::string& statements) const { sql(statements, "calibration.sqlite"); }

    /// The mass of index 1 in both arrays of the spectrum; 0 if they differ.
    double massOf(int spectrum, int rawCalibration = 0) const {
        const Storage storage(mainFile(), rawCalibration);
        EXPECT_TRUE(storage) << lastError();
        const auto lines = storage.read<double>(id("LineMzId", spectrum));
        const auto profile = storage.read<double>(id("ProfileMzId", spectrum));
        return lines.at(0) == profile.at(1) ? lines.at(0) : 0.0;
    }

    /// Log lines of the opening, without time and thread.
    std::vector<std::string> logOfOpening(int rawCalibration = 0) const {
        Storage(mainFile(), 1);  // lets the cache be made
        ::testing::internal::CaptureStdout();
        Storage(mainFile(), rawCalibration);
        std::istringstream log(::testing::internal::GetCapturedStdout());
        std::vector<std::string> lines;
        for (std::string line; std::getline(log, line);)
            lines.push_back(line.substr(line.rfind("] ") + 2));
        return lines;
    }
};

const std::string g_noState = "kvan.io.qsf2sql: no state found in CalibrationReaderSqlite";
const std::string g_noArchive = "kvan.io.qsf2sql: no state found in Calibrator.ami";
const std::string g_none = "kvan.io.qsf2sql: no re-calibration found; using calibration state from QSF";

TEST_F(Recalibrated, TheDatabaseBeatsTheArchiveAndThatTheAcquisition) {
    using Lines = std::vector<std::string>;
    writeAnalysis({0, 0, 0});
    EXPECT_EQ(logOfOpening(), (Lines{g_noState, g_noArchive, g_none}));
    EXPECT_EQ(massOf(2), g_acquired);
    writeArchive(3);
    EXPECT_EQ(logOfOpening(), (Lines{g_noState}));
    EXPECT_EQ(massOf(2), g_archived);
    writeDatabase(3);
    EXPECT_EQ(logOfOpening(), Lines{});
    for (int spectrum = 1; spectrum <= 3; ++spectrum)
        EXPECT_EQ(massOf(spectrum), g_frame);
    writeDatabase(2);
    EXPECT_EQ(massOf(2), g_archived) << "a state with a gap is passed over";
    fs::remove(m_directory / "Calibrator.ami");
    EXPECT_EQ(logOfOpening(), (Lines{g_noState, g_noArchive, g_none}));
    EXPECT_EQ(massOf(2), g_acquired);
}

TEST_F(Recalibrated, RawCalibrationOpensNeither) {
    writeAnalysis({0});
    kvan::test::writeFile(m_directory / "calibration.sqlite", std::string(4096, 'x'));
    kvan::test::writeFile(m_directory / "Calibrator.ami", "x");
    EXPECT_EQ(logOfOpening(1), std::vector<std::string>{});
    EXPECT_EQ(massOf(1, 1), g_acquired);
    EXPECT_FALSE(Storage(mainFile(), 0));
    EXPECT_EQ(lastError(), "CppSQLite3Exception: UNKNOWN_ERROR[26]: file is not a database");
    fs::remove(m_directory / "calibration.sqlite");
    EXPECT_FALSE(Storage(mainFile(), 0));
    EXPECT_EQ(lastError(), "Couldn't open AMI file " + (m_directory / "Calibrator.ami").string());
    writeDatabase(1);
    EXPECT_EQ(massOf(1), g_frame) << "the archive is not opened any more";
}

TEST_F(Recalibrated, ReferencesServeThePolaritiesThatOccur) {
    const CalibrationState both{.positive = {{trap(g_positive)}}, .negative = {{trap(g_negative)}}};
    const CalibrationState positive{.positive = {{trap(g_positive)}}};
    writeAnalysis({0, 1});
    writeDatabase(0, both);
    EXPECT_EQ(massOf(1), g_positive);
    EXPECT_EQ(massOf(2), g_negative);
    writeDatabase(0, positive);
    EXPECT_EQ(massOf(1), g_acquired) << "one polarity has none";
    writeAnalysis({0, 2});
    EXPECT_EQ(logOfOpening(), std::vector<std::string>{}) << "a polarity that is none counts as positive";
    EXPECT_EQ(massOf(1), g_positive);

    // A reference that is not there is named by the read that needs it.
    databaseSql("DELETE FROM RefMzCalibration");
    const Storage storage(mainFile(), 0);
    ASSERT_TRUE(storage) << lastError();
    EXPECT_EQ(storage.failureOf(id("LineMzId")), "no reference calibration available for positive polarity");
    EXPECT_EQ(storage.length(id("LineMzId")), 1) << "the handle stays usable";
}

/// A law without functional constants, which could tell temperatures, is replaced like any other.
TEST_F(Recalibrated, ReferencesReplaceKite2) {
    Bytes kite2(184);  // type, block, global polynomial 0 + 1 x, parent polynomial without coefficients
    const auto set = [&kite2](std::size_t offset, auto value) {
        std::memcpy(kite2.data() + offset, &value, sizeof value);
    };
    set(0, std::uint16_t{8});
    set(4 + 84, std::uint16_t{1});        // parents
    set(4 + 88, std::uint32_t{100});      // the global polynomial
    set(4 + 92, std::uint32_t{148});      // the parent
    set(4 + 100 + 26, std::uint16_t{2});  // coefficients of the global one
    set(4 + 100 + 28, std::uint32_t{32});
    set(4 + 100 + 40, 1.0);
    write({{.profile = Counts{1, 2}, .lines = LineData{.index = {{1.0}}}, .info = {.calibration = kite2}}});
    writeDatabase(0, {.positive = {{trap(g_positive)}}});
    EXPECT_EQ(massOf(1), g_positive);
}

TEST_F(Recalibrated, TheErrorOfARunIsTakenOut) {
    bool gpx = false;
    const auto mzOf = [&](sample::SampleCalibration law, sample::Recalibrations stores, int rawCalibration) {
        fs::remove(cacheFile());
        sample::writeSampleRun(m_directory, {.spectra = 20,
                                             .calibration = law,
                                             .gpx = gpx,
                                             .points = 1000,
                                             .polarities = sample::Polarities::Both,
                                             .recalibrations = stores});
        const Storage storage(mainFile(), rawCalibration);
        EXPECT_TRUE(storage) << lastError();
        const auto masses = storage.read<double>(id("LineMzId", 10));
        return masses.at(masses.size() / 2);
    };
    using enum sample::SampleCalibration;
    using sample::Recalibrations;
    for (const auto law :
         {TofLinear, TofQuadratic, TofCompensated, TofCompensatedSeveral, PaladinLinear, Ftms, FtmsQuadratic}) {
        const double truth = mzOf(law, Recalibrations::None, 0);
        // The temperatures tell the drift but for less than a thousandth of a part per million.
        EXPECT_NEAR(mzOf(law, Recalibrations::Both, 0), truth, truth * 1e-9) << static_cast<int>(law);
        EXPECT_GT(std::abs(mzOf(law, Recalibrations::Both, 1) - truth), truth * 1e-6) << static_cast<int>(law);
    }
    gpx = true;
    EXPECT_EQ(mzOf(TofQuadratic, Recalibrations::Database, 0), mzOf(TofQuadratic, Recalibrations::None, 0));
}

TEST_F(Recalibrated, FaultsAreNamedWhereTheyAreFound) {
    writeAnalysis({0});
    writeArchive(1);
    const std::pair<const char*, const char*> atOpen[] = {
        {"UPDATE GlobalMetadata SET Value = x'41FF42C3' WHERE Key = 'SchemaType'",
         "Schema type 'A\xEF\xBF\xBD"
         "B\xEF\xBF\xBD' not supported"},
        {"DROP TABLE FrameMzCalibrationMapping",
         "CppSQLite3Exception: SQLITE_ERROR[1]: no such table: FrameMzCalibrationMapping"},
    };
    for (const auto& [change, text] : atOpen) {
        writeDatabase(1);
        databaseSql(change);
        EXPECT_FALSE(Storage(mainFile(), 0)) << change;
        EXPECT_EQ(lastError(), text);
    }
    writeDatabase(1);
    databaseSql("UPDATE CalibrationState SET Key = 'it''s; DROP TABLE CalibrationState'");
    const Storage storage(mainFile(), 0);
    ASSERT_TRUE(storage) << lastError();
    const std::uint64_t mz = id("LineMzId");
    EXPECT_EQ(storage.read<double>(mz).at(0), g_frame);
    const std::pair<const char*, const char*> atRead[] = {
        {"UPDATE FrameMzCalibration SET C1 = NULL",
         "Wrong value in table FrameMzCalibration, Id 1, column C1: NULL instead of a number"},
        {"DROP TABLE FrameMzCalibrationMapping", "SQLITE_ERROR[1]: no such table: FrameMzCalibrationMapping"},
    };
    for (const auto& [change, text] : atRead) {
        databaseSql(change);
        EXPECT_EQ(storage.failureOf(mz), text) << change;
    }
    EXPECT_EQ(storage.read<double>(id("LineIndexId")).at(0), 1.0) << "the handle stays usable";
}

TEST_F(Recalibrated, HandlesOfManyThreadsAreIndependent) {
    writeAnalysis(std::vector<std::uint8_t>(200));
    writeDatabase(200);
    ASSERT_TRUE(Storage(mainFile(), 1));
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ids;
    for (int spectrum = 1; spectrum <= 200; ++spectrum)
        ids.emplace_back(id("LineMzId", spectrum), id("ProfileIntensityId", spectrum));
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            qsf2sql_set_num_threads(2);
            const Storage storage(mainFile(), 0);
            for (const auto& [mz, profile] : ids)
                right += storage.read<double>(mz) == Doubles{g_frame} && storage.read<float>(profile) == Floats{1, 2};
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, 4 * 200);
}

TEST_F(Recalibrated, APathWithoutADirectoryMeansTheCurrentOne) {
    writeAnalysis({0});
    writeDatabase(1);
    const fs::path former = fs::current_path();
    fs::current_path(m_directory);
    char buffer[32] = "";
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer, sizeof buffer, "analysis.qsf"), sizeof buffer);
    EXPECT_STREQ(buffer, "analysis.sqlite");
    EXPECT_EQ(Storage("analysis.qsf", 0).read<double>(id("LineMzId")).at(0), g_frame);
    fs::remove("calibration.sqlite");
    writeArchive(1);
    EXPECT_EQ(Storage("analysis.qsf", 0).read<double>(id("LineMzId")).at(0), g_archived);
    fs::current_path(former);
}

}  // namespace
}  // namespace road
