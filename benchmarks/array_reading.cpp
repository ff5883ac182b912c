// What a caller pays for arrays through the exported functions: profiles and peak lists as stored, and computed m/z.
// Several spectra in rotation, so that no call finds what the one before it left.

#include "ratio.h"

#include <io/qsf2sql/qsf2sql.h>
#include <sample-analysis/analysis_writer.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace {

namespace fs = boost::filesystem;
using kvan::sample::AnalysisWriter;
using kvan::sample::LineData;
using kvan::sample::ScanData;

constexpr std::size_t g_spectra = 16;
constexpr std::size_t g_profilePoints = 200000;
constexpr std::size_t g_lines = 1000;
constexpr std::uint64_t g_scanHead = sizeof(KVAN::io::QSF::ScanSpectrumHeader);
constexpr std::uint64_t g_lineHead =
    sizeof(KVAN::io::QSF::LineSpectrumHeader) + sizeof(KVAN::io::QSF::ExtendedLineHeader<float>);

/// An analysis on disk, open for reading, removed at the end.
class Analysis {
public:
    explicit Analysis(const kvan::sample::SpectrumData& spectrum)
        : m_directory(fs::temp_directory_path() / fs::unique_path("bench-%%%%%%%%")) {
        AnalysisWriter writer(m_directory);
        for (std::size_t index = 0; index < g_spectra; ++index)
            locations.push_back(writer.addSpectrum(spectrum));
        writer.finish();
        m_handle = qsf2sql_array_open_storage(1, writer.mainFilePath().c_str());
        if (m_handle == 0)
            throw std::runtime_error("the analysis does not open");
        mainFile = kvan::sys::PositionedFile::open(writer.mainFilePath());
    }
    Analysis(const Analysis&) = delete;
    Analysis& operator=(const Analysis&) = delete;
    ~Analysis() {
        qsf2sql_array_close_storage(m_handle);
        fs::remove_all(m_directory);
    }

    std::uint64_t handle() const { return m_handle; }
    std::string cacheFile() const { return (m_directory / "analysis.sqlite").string(); }
    const kvan::sample::SpectrumLocation& next() { return locations[m_turn++ % g_spectra]; }

    std::vector<kvan::sample::SpectrumLocation> locations;
    std::unique_ptr<kvan::sys::PositionedFile> mainFile;

private:
    fs::path m_directory;
    std::uint64_t m_handle = 0;
    std::size_t m_turn = 0;
};

std::uint64_t arrayId(std::uint64_t kind, std::uint64_t offset) {
    return kind << 56 | offset;
}

int readArray(std::uint64_t handle, std::uint64_t id, double* out) {
    return qsf2sql_array_read_double(handle, id, out);
}
int readArray(std::uint64_t handle, std::uint64_t id, std::uint32_t* out) {
    return qsf2sql_array_read_uint32(handle, id, out);
}

/// A profile that is stored as `T`, against the bytes read into one buffer and copied to another.
template <class T>
void plainProfile(benchmark::State& state) {
    Analysis analysis({.profile = ScanData(std::vector<T>(g_profilePoints, T(7)))});
    std::vector<T> out(g_profilePoints);
    std::vector<T> buffer(g_profilePoints);
    const std::size_t bytes = g_profilePoints * sizeof(T);
    benchmarks::reportRatio(
        state, 1.3,
        [&] {
            if (readArray(analysis.handle(), arrayId(66, analysis.next().scan), out.data()) == 0)
                state.SkipWithError("read failed");
        },
        [&] {
            analysis.mainFile->readAt(reinterpret_cast<char*>(buffer.data()), static_cast<std::int64_t>(bytes),
                                      analysis.next().scan + g_scanHead);
            std::memcpy(out.data(), buffer.data(), bytes);
            benchmark::ClobberMemory();
        });
}
BENCHMARK(plainProfile<std::uint32_t>)->UseManualTime();
BENCHMARK(plainProfile<double>)->UseManualTime();

kvan::sample::SpectrumData peakList() {
    std::vector<double> index(g_lines);
    for (std::size_t line = 0; line < g_lines; ++line)
        index[line] = 150.25 * static_cast<double>(line) + 1000.5;
    LineData lines{.index = index, .intensity = std::vector<double>(g_lines, 100.0)};
    kvan::sample::Bytes calibration(44, 0);
    calibration[0] = 1;
    const double constants[] = {25000.0, 0.2, 12.5, 500.0, 1e-3};
    std::memcpy(calibration.data() + 4, constants, sizeof constants);
    return {.lines = lines, .info = {.acquiredUpper = 1.5e5F, .calibration = calibration}};
}

/// Length and intensities, against one read of the same bytes.
void lineIntensities(benchmark::State& state) {
    Analysis analysis(peakList());
    std::vector<double> out(g_lines);
    std::vector<float> buffer(g_lines);
    benchmarks::reportRatio(
        state, 3.0,
        [&] {
            std::uint64_t count = 0;
            const std::uint64_t id = arrayId(17, analysis.next().lines);
            if (qsf2sql_array_get_num_elements(analysis.handle(), id, &count) == 0 ||
                readArray(analysis.handle(), id, out.data()) == 0)
                state.SkipWithError("read failed");
        },
        [&] {
            analysis.mainFile->readAt(reinterpret_cast<char*>(buffer.data()), g_lines * sizeof(float),
                                      analysis.next().lines + g_lineHead + g_lines * sizeof(double));
            benchmark::ClobberMemory();
        });
}
BENCHMARK(lineIntensities)->UseManualTime();

void stepOnce(sqlite3* database, const std::string& query) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr);
    if (sqlite3_step(statement) != SQLITE_ROW)
        throw std::runtime_error("no row");
    sqlite3_finalize(statement);
}

/// Length and m/z, against the two queries that it takes, bare and prepared anew each time.
void lineMz(benchmark::State& state) {
    Analysis analysis(peakList());
    std::vector<double> out(g_lines);
    sqlite3* database = nullptr;
    sqlite3_open(analysis.cacheFile().c_str(), &database);
    benchmarks::reportRatio(
        state, 0.7,
        [&] {
            std::uint64_t count = 0;
            const std::uint64_t id = arrayId(22, analysis.next().lines);
            if (qsf2sql_array_get_num_elements(analysis.handle(), id, &count) == 0 ||
                readArray(analysis.handle(), id, out.data()) == 0)
                state.SkipWithError("read failed");
        },
        [&] {
            const auto& spectrum = analysis.next();
            stepOnce(database,
                     "SELECT s.Id, ak.Polarity, TransformatorId, LineMzId, ProfileMzId, LineIndexId FROM Spectra s "
                     "JOIN AcquisitionKeys ak ON ak.Id=s.AcquisitionKey WHERE LineMzId = " +
                         std::to_string(arrayId(22, spectrum.lines)));
            stepOnce(database, "SELECT Blob FROM Transformators WHERE ID = " + std::to_string(spectrum.id));
        });
    sqlite3_close(database);
}
BENCHMARK(lineMz)->UseManualTime();

}  // namespace
