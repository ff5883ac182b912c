#pragma once

#include <sample-analysis/native_files.h>

namespace kvan::sample::native {

/// Where a spectrum went. Offsets are those of the blocks in the main file, 0 for a block that was not written.
struct SpectrumLocation {
    std::uint32_t id = 0;  ///< `Spectra.Id`, from 1
    std::uint64_t condition = 0;
    std::uint64_t scan = 0;
    std::uint64_t lines = 0;
};

/// Writes `analysis.qsf`, `analysis.qsf_idx` and `analysis.qsf_xtr` of one analysis, spectrum by spectrum, and replaces
/// files of these names. Memory does not grow with the number of spectra.
///
///     AnalysisWriter writer(directory, {.description = AnalysisDescription{.sampleName = "blank"}});
///     const SpectrumLocation first = writer.addSpectrum({.lines = LineData{.index = {{1.5}}, .intensity = {{20.0}}}});
///     writer.finish();
class AnalysisWriter {
public:
    /// Writes what stands before the spectra. Makes the directory if it is missing.
    explicit AnalysisWriter(const boost::filesystem::path& directory, const AnalysisHeaderData& header = {});

    /// Begins the next segment, counted from 1, and gives its number.
    std::uint32_t addSegment(const Bytes& pool = {});

    /// Adds the next spectrum to the current segment; begins the first segment if there is none yet.
    SpectrumLocation addSpectrum(const SpectrumData& spectrum);

    /// Writes the ends of the files and closes them.
    void finish();

    const boost::filesystem::path& mainFilePath() const { return m_mainFilePath; }
    std::uint32_t numberOfSpectra() const { return m_spectra; }

private:
    boost::filesystem::path m_mainFilePath;
    MainFileWriter m_main;
    IndexFileWriter m_index;
    ExtraFileWriter m_extra;
    std::uint32_t m_segments = 0;
    std::uint32_t m_spectra = 0;
};

}  // namespace kvan::sample::native

namespace kvan::sample {
using namespace native;  // callers need not know the room
}
