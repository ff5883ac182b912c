// What a re-calibration costs: the m/z of all peak lists of a run through the exported functions, with the calibration
// database or the archive in force, against the same reads with what was acquired.

#include "ratio.h"

#include <io/qsf2sql/qsf2sql.h>
#include <sample-analysis/sample_run.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include <sqlite3.h>

namespace {

namespace fs = boost::filesystem;
namespace sample = kvan::sample;

constexpr std::uint32_t g_spectra = 2000;

void require(bool condition, const char* what) {
    if (!condition)
        BOOST_THROW_EXCEPTION(std::runtime_error(what));
}

struct Handle {
    Handle(const std::string& mainFile, int rawCalibration)
        : value(qsf2sql_array_open_storage(rawCalibration, mainFile.c_str())) {
        require(value != 0, "the analysis does not open");
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { qsf2sql_array_close_storage(value); }

    std::uint64_t value;
};

/// A run of peak lists with its re-calibration, removed at the end.
class Run {
public:
    Run(sample::SampleCalibration law, sample::Recalibrations stores)
        : m_directory(fs::temp_directory_path() / fs::unique_path("bench-%%%%%%%%")),
          m_mainFile(sample::writeSampleRun(m_directory, {.spectra = g_spectra,
                                                          .calibration = law,
                                                          .profiles = sample::Profiles::None,
                                                          .recalibrations = stores})
                         .string()) {
        const Handle cached(m_mainFile, 1);
        sqlite3* database = nullptr;
        require(sqlite3_open((m_directory / "analysis.sqlite").c_str(), &database) == SQLITE_OK, "no cache");
        const auto take = [](void* result, int, char** texts, char**) {
            static_cast<std::vector<std::uint64_t>*>(result)->push_back(std::stoull(texts[0]));
            return 0;
        };
        sqlite3_exec(database, "SELECT LineMzId FROM Spectra ORDER BY Id", take, &m_ids, nullptr);
        sqlite3_close(database);
        require(m_ids.size() == g_spectra, "peak lists are missing");
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() { fs::remove_all(m_directory); }

    const std::string& mainFile() const { return m_mainFile; }

    void readAll(const Handle& handle) {
        for (const std::uint64_t id : m_ids) {
            std::uint64_t count = 0;
            require(qsf2sql_array_get_num_elements(handle.value, id, &count) == 1, "no length");
            m_masses.resize(count);
            require(qsf2sql_array_read_double(handle.value, id, m_masses.data()) == 1, "read failed");
        }
    }

private:
    fs::path m_directory;
    std::string m_mainFile;
    std::vector<std::uint64_t> m_ids;
    std::vector<double> m_masses;
};

/// The run's lines are few a spectrum, some 100, so that the way to the calibration weighs more than the masses. A
/// re-calibration was usually written long ago; one that is `fresh` is read under locks.
void peakListMz(benchmark::State& state, sample::SampleCalibration law, sample::Recalibrations stores, bool fresh) {
    Run run(law, stores);
    if (!fresh)
        std::this_thread::sleep_for(std::chrono::seconds(5));
    const Handle recalibrated(run.mainFile(), 0);
    const Handle acquired(run.mainFile(), 1);
    benchmarks::reportRatio(
        state, fresh ? 0 : 1.5, [&] { run.readAll(recalibrated); }, [&] { run.readAll(acquired); });
}
BENCHMARK_CAPTURE(peakListMz, frameCalibrators, sample::SampleCalibration::TofQuadratic,
                  sample::Recalibrations::Database, false)
    ->UseManualTime();
BENCHMARK_CAPTURE(peakListMz, freshFrameCalibrators, sample::SampleCalibration::TofQuadratic,
                  sample::Recalibrations::Database, true)
    ->UseManualTime();
BENCHMARK_CAPTURE(peakListMz, compensatedReferences, sample::SampleCalibration::TofCompensatedSeveral,
                  sample::Recalibrations::Database, false)
    ->UseManualTime();
BENCHMARK_CAPTURE(peakListMz, archive, sample::SampleCalibration::TofQuadratic, sample::Recalibrations::Archive, false)
    ->UseManualTime();

}  // namespace
