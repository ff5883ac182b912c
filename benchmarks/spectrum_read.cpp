// What a caller pays for whole profile spectra through the exported functions, packed by the first coder: short ones
// against long ones, and m/z with intensities against the same spectrum in an HDF5 file, where that library is
// installed. Several spectra in rotation, so that no call finds what the one before it left.

#include "profile_arrays.h"
#include "ratio.h"

#include <io/qsf2sql/qsf2sql.h>
#include <sample-analysis/analysis_writer.h>
#include <sample-analysis/packing.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <cstring>
#include <stdexcept>
#include <string>

#ifdef QSF_HAS_HDF5
#include <hdf5.h>
#endif

namespace {

namespace fs = boost::filesystem;
namespace sample = kvan::sample;

constexpr std::size_t g_longSpectrum = 200'000;
constexpr std::size_t g_shortSpectrum = 5'000;

void require(bool condition, const char* what) {
    if (!condition)
        BOOST_THROW_EXCEPTION(std::runtime_error(what));
}

/// A quadratic time-of-flight law: masses of about 100 to 2,300 over 200,000 points.
sample::Bytes calibration() {
    sample::Bytes blob(44, 0);
    blob[0] = 1;
    const double constants[] = {20000.0, 0.2, 120.5, 250000.0, -1.5e-3};
    std::memcpy(blob.data() + 4, constants, sizeof constants);
    return blob;
}

/// Noisy profiles of one length on disk, open for reading, removed at the end.
class Analysis {
public:
    Analysis(std::size_t spectra, std::size_t points)
        : m_directory(fs::temp_directory_path() / fs::unique_path("bench-%%%%%%%%")), m_points(points) {
        const auto coder = sample::Compressor::Vlc;
        sample::ProfilePacker packer(coder);
        sample::AnalysisWriter writer(m_directory, {.compressors = {sample::guidOf(coder)}});
        for (unsigned seed = 1; seed <= spectra; ++seed) {
            profiles.push_back(benchmarks::makeProfile(benchmarks::ProfileKind::Noisy, points, seed));
            const sample::SpectrumData spectrum{
                .profile = packer.pack(profiles.back()),
                .info = {.acquiredUpper = static_cast<float>(points - 1), .calibration = calibration()}};
            m_offsets.push_back(writer.addSpectrum(spectrum).scan);
        }
        writer.finish();
        m_handle = qsf2sql_array_open_storage(1, writer.mainFilePath().c_str());
        require(m_handle != 0, "the analysis does not open");
    }
    Analysis(const Analysis&) = delete;
    Analysis& operator=(const Analysis&) = delete;
    ~Analysis() {
        qsf2sql_array_close_storage(m_handle);
        fs::remove_all(m_directory);
    }

    std::size_t next() { return m_turn++ % m_offsets.size(); }

    /// Array kinds: 66 the intensities of a profile, 67 its m/z.
    void read(std::uint64_t kind, std::size_t spectrum, std::vector<double>& out) const {
        const std::uint64_t id = kind << 56 | m_offsets[spectrum];
        std::uint64_t count = 0;
        require(qsf2sql_array_get_num_elements(m_handle, id, &count) == 1 && count == m_points, "other length");
        out.resize(count);
        require(qsf2sql_array_read_double(m_handle, id, out.data()) == 1, "read failed");
    }

    std::vector<std::vector<std::uint32_t>> profiles;

private:
    fs::path m_directory;
    std::size_t m_points;
    std::vector<std::uint64_t> m_offsets;
    std::uint64_t m_handle = 0;
    std::size_t m_turn = 0;
};

/// As many elements out of short spectra as out of a long one.
void shortSpectra(benchmark::State& state) {
    Analysis shortOnes(400, g_shortSpectrum);
    Analysis longOnes(6, g_longSpectrum);
    std::vector<double> few;
    std::vector<double> many;
    benchmarks::reportRatio(
        state, 1.25,
        [&] {
            for (std::size_t read = 0; read < g_longSpectrum; read += g_shortSpectrum)
                shortOnes.read(66, shortOnes.next(), few);
        },
        [&] { longOnes.read(66, longOnes.next(), many); });
}
BENCHMARK(shortSpectra)->UseManualTime();

#ifdef QSF_HAS_HDF5

/// The same spectra in one HDF5 file: m/z as doubles, counts as they are, each array one chunk, shuffled and deflated.
class Hdf5File {
public:
    explicit Hdf5File(const Analysis& analysis)
        : m_path(fs::temp_directory_path() / fs::unique_path("bench-%%%%%%%%.h5")),
          m_file(H5Fcreate(m_path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)) {
        std::vector<double> masses;
        for (std::size_t spectrum = 0; spectrum < analysis.profiles.size(); ++spectrum) {
            analysis.read(67, spectrum, masses);
            add("mz" + std::to_string(spectrum), H5T_NATIVE_DOUBLE, masses.data(), masses.size());
            const auto& profile = analysis.profiles[spectrum];
            add("counts" + std::to_string(spectrum), H5T_NATIVE_UINT32, profile.data(), profile.size());
        }
    }
    Hdf5File(const Hdf5File&) = delete;
    Hdf5File& operator=(const Hdf5File&) = delete;
    ~Hdf5File() {
        H5Fclose(m_file);
        fs::remove(m_path);
    }

    void read(const std::string& name, std::vector<double>& out) const {
        const hid_t dataset = H5Dopen2(m_file, name.c_str(), H5P_DEFAULT);
        const hid_t space = H5Dget_space(dataset);
        out.resize(static_cast<std::size_t>(H5Sget_simple_extent_npoints(space)));
        require(H5Dread(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, out.data()) >= 0, "read failed");
        H5Sclose(space);
        H5Dclose(dataset);
    }

private:
    void add(const std::string& name, hid_t type, const void* elements, hsize_t count) const {
        const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_chunk(properties, 1, &count);
        H5Pset_shuffle(properties);
        H5Pset_deflate(properties, 1);
        const hid_t space = H5Screate_simple(1, &count, nullptr);
        const hid_t dataset = H5Dcreate2(m_file, name.c_str(), type, space, H5P_DEFAULT, properties, H5P_DEFAULT);
        require(H5Dwrite(dataset, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, elements) >= 0, "write failed");
        H5Dclose(dataset);
        H5Sclose(space);
        H5Pclose(properties);
    }

    fs::path m_path;
    hid_t m_file;
};

void spectrumAgainstHdf5(benchmark::State& state) {
    qsf2sql_set_num_threads(1);
    Analysis analysis(6, g_longSpectrum);
    const Hdf5File file(analysis);
    std::vector<double> masses;
    std::vector<double> intensities;
    std::size_t turn = 0;
    benchmarks::reportRatio(
        state, 1.0 / 8.0,
        [&] {
            const std::size_t spectrum = analysis.next();
            analysis.read(66, spectrum, intensities);
            analysis.read(67, spectrum, masses);
        },
        [&] {
            const std::string spectrum = std::to_string(turn++ % analysis.profiles.size());
            file.read("counts" + spectrum, intensities);
            file.read("mz" + spectrum, masses);
        });
}
BENCHMARK(spectrumAgainstHdf5)->UseManualTime();

#endif

}  // namespace
