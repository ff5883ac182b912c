// Generation of a cache of 100,000 spectra against bare inserts and updates of the same rows through SQLite's C
// interface, and the peak memory of a generation.

#include "bare_sqlite.h"
#include "qsf2sql/cache/cache_schema.h"
#include "qsf2sql/cache_generator.h"
#include "ratio.h"

#include <cppsqlite/CppSQLite3.h>
#include <sample-analysis/sample_run.h>

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <fstream>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace {

namespace fs = boost::filesystem;
using namespace benchmarks;
using namespace kvan;

/// A synthetic LC-MS/MS run of four fragment spectra to a survey. Gone with its directory when the object goes.
class Analysis {
public:
    explicit Analysis(const sample::SampleRunParameters& parameters)
        : m_directory(fs::temp_directory_path() / fs::unique_path("qsf-generation-%%%%-%%%%")),
          m_mainFile(sample::writeSampleRun(m_directory, parameters)) {}
    ~Analysis() { fs::remove_all(m_directory); }

    const fs::path& mainFile() const { return m_mainFile; }
    fs::path cacheFile() const { return m_directory / "cache.sqlite"; }

private:
    fs::path m_directory;
    fs::path m_mainFile;
};

sample::SampleRunParameters parameters(std::int64_t spectra, std::int64_t pointsOfProfile, bool references) {
    return {.spectra = static_cast<std::uint32_t>(spectra),
            .points = static_cast<std::uint32_t>(std::max<std::int64_t>(pointsOfProfile, 1000)),
            .profiles = pointsOfProfile == 0 ? sample::Profiles::None : sample::Profiles::All,
            .maxLines = 20,
            .referenceCalibrations = references,
            .variables = false,
            .coelutingPeptides = 1.0};
}

void openNew(cppsqlite::CppSQLite3DB& database, const fs::path& file) {
    fs::remove(file);
    database.open(file.string());
    database.execDML("PRAGMA journal_mode=MEMORY");
    database.execDML("BEGIN TRANSACTION");
}

void generate(const Analysis& analysis) {
    cppsqlite::CppSQLite3DB database;
    openNew(database, analysis.cacheFile());
    io::CacheGenerator::fillSqlCacheFromQsf(analysis.mainFile(), database, false, {});
    database.execDML("COMMIT TRANSACTION");
}

/// Of this process, in MB.
double peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::stod(line.substr(6)) / 1024.0;
    return 0.0;
}

void forgetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

/// Before the other benchmarks, whose rows in memory would count.
void peakMemoryOfAGeneration(benchmark::State& state) {
    const Analysis analysis(parameters(state.range(0), state.range(1), true));
    forgetPeakMemory();
    for (auto _ : state)
        generate(analysis);
    state.counters["peak_MB"] = peakMemory();
    state.counters["goal_MB"] = 200;
}
BENCHMARK(peakMemoryOfAGeneration)
    ->ArgNames({"spectra", "points"})
    ->Args({1000, 0})
    ->Args({100000, 0})
    ->Args({100000, 1000})
    ->Args({1000000, 0})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// What the generator writes for each spectrum, written with nothing else around it.
class Yardstick {
public:
    explicit Yardstick(const std::string& cache)
        : m_inserted(cache,
                     "SELECT Id, Segment, LineIndexId, LineIntensityId, LineIndexWidthId, LinePeakAreaId, "
                     "LineSnrId, LineMzId, ProfileIntensityId, ProfileMzId FROM Spectra"),
          m_transformators(cache, "SELECT Blob FROM Transformators"),
          m_updated(cache,
                    "SELECT Rt, AcquisitionKey, Parent, MzAcqRangeLower, MzAcqRangeUpper, SumIntensity, "
                    "MaxIntensity, TransformatorId, Id FROM Spectra"),
          m_steps(cache, "SELECT * FROM Steps") {}

    void write(const fs::path& file, bool withIndexes) const {
        fs::remove(file);
        sqlite3* connection = nullptr;
        check(sqlite3_open(file.c_str(), &connection), connection);
        const auto execute = [connection](const char* sql) {
            check(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), connection);
        };
        execute("PRAGMA journal_mode=MEMORY");
        execute("BEGIN TRANSACTION");
        for (const char* const statement : io::qsf2sql::cache::g_createTables)
            execute(statement);
        run(m_inserted, connection,
            "INSERT INTO Spectra (Id, Segment, LineIndexId, LineIntensityId, LineIndexWidthId, "
            "LinePeakAreaId, LineSnrId, LineMzId, ProfileIntensityId, ProfileMzId) VALUES "
            "(?,?,?,?,?,?,?,?,?,?)");
        run(m_transformators, connection, "INSERT INTO Transformators (Blob) VALUES (?)");
        run(m_updated, connection,
            "UPDATE Spectra SET Rt = ?, AcquisitionKey = ?, Parent = ?, MzAcqRangeLower = ?, "
            "MzAcqRangeUpper = ?, SumIntensity = ?, MaxIntensity = ?, TransformatorId = ? "
            "WHERE Id = ?");
        run(m_steps, connection,
            "INSERT INTO Steps (TargetSpectrum,Number,IsolationType,ReactionType,MsLevel,Mass) "
            "VALUES (?,?,?,?,?,?)");
        if (withIndexes)
            for (const char* const statement : io::qsf2sql::cache::g_createIndexes)
                execute(statement);
        execute("COMMIT TRANSACTION");
        sqlite3_close(connection);
    }

private:
    static void run(const Rows& rows, sqlite3* connection, const char* sql) {
        BareStatement statement(connection, sql);
        rows.runAll(statement);
    }

    Rows m_inserted;
    Rows m_transformators;
    Rows m_updated;
    Rows m_steps;
};

constexpr std::int64_t g_spectra = 100000;

/// Each spectrum with its own calibration or with one of the header. The goal grants no time for the indexes; `indexes`
/// tells what they cost.
void generationOfACache(benchmark::State& state) {
    const Analysis analysis(parameters(g_spectra, state.range(0), state.range(1) != 0));
    generate(analysis);
    const Yardstick yardstick(analysis.cacheFile().string());
    reportRatio<boost::chrono::steady_clock>(
        state, 1.3, [&] { generate(analysis); }, [&] { yardstick.write(analysis.cacheFile(), state.range(2) != 0); });
}
BENCHMARK(generationOfACache)
    ->ArgNames({"points", "references", "indexes"})
    ->Args({0, 1, 0})
    ->Args({0, 1, 1})
    ->Args({0, 0, 0})
    ->Args({1000, 1, 0})
    ->Iterations(15)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
