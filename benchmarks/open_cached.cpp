// Opening and closing an analysis with a valid cache against a bare open of the database, a check of its version and
// the close. The cost must not depend on the number of spectra.

#include "ratio.h"

#include <io/qsf2sql/qsf2sql.h>
#include <sample-analysis/analysis_writer.h>

#include <boost/filesystem/operations.hpp>
#include <cstring>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

namespace {

namespace fs = boost::filesystem;
using namespace kvan;

/// Opens and closes the analysis, without a look for re-calibrations.
void openAndClose(const std::string& mainFile) {
    const std::uint64_t storage = qsf2sql_array_open_storage(1, mainFile.c_str());
    if (storage == 0)
        throw std::runtime_error("the analysis does not open");
    qsf2sql_array_close_storage(storage);
}

void openAndCloseBare(const std::string& cache) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* query = nullptr;
    const bool isValid =
        sqlite3_open(cache.c_str(), &connection) == SQLITE_OK &&
        sqlite3_prepare_v2(connection, "SELECT SchemaVersion FROM Info", -1, &query, nullptr) == SQLITE_OK &&
        sqlite3_step(query) == SQLITE_ROW &&
        std::strcmp(reinterpret_cast<const char*>(sqlite3_column_text(query, 0)), "1.6.2c") == 0;
    sqlite3_finalize(query);
    sqlite3_close(connection);
    if (!isValid)
        throw std::runtime_error("the cache is not valid");
}

/// An analysis without spectra data and its cache. Gone with its directory when the object goes.
class CachedAnalysis {
public:
    explicit CachedAnalysis(std::int64_t spectra) {
        sample::AnalysisWriter writer(m_directory, {});
        for (std::int64_t number = 0; number < spectra; ++number)
            writer.addSpectrum({});
        writer.finish();
        m_mainFile = writer.mainFilePath();
        openAndClose(m_mainFile.string());
    }
    CachedAnalysis(const CachedAnalysis&) = delete;
    ~CachedAnalysis() { fs::remove_all(m_directory); }

    std::string mainFile() const { return m_mainFile.string(); }
    std::string cache() const { return fs::path(m_mainFile).replace_extension(".sqlite").string(); }

private:
    fs::path m_directory = fs::temp_directory_path() / fs::unique_path("qsf-open-%%%%-%%%%");
    fs::path m_mainFile;
};

/// Range: number of spectra.
void openCached(benchmark::State& state) {
    const CachedAnalysis analysis(state.range(0));
    benchmarks::reportRatio(
        state, 4.0, [mainFile = analysis.mainFile()] { openAndClose(mainFile); },
        [cache = analysis.cache()] { openAndCloseBare(cache); });
}
BENCHMARK(openCached)->Arg(1000)->Arg(500'000)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
