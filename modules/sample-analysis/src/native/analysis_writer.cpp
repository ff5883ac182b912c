#include <qsf2sql/qsflib/ResourceRecords.h>
#include <sample-analysis/analysis_writer.h>

#include <boost/filesystem/operations.hpp>

// The three files of an analysis meet on one number: entry n of the index (from 0), the quick info of number n + 1 in
// the extra file and the conditions of spectrum n + 1 in the main file are one spectrum. The blocks of a spectrum
// follow one another in the main file, conditions first, as in the files of an instrument, and each is entered in the
// index at once: nothing is kept but the counters. A failure leaves files without their ends; the caller takes them
// away.

namespace kvan::sample::native {

namespace qsf = KVAN::io::QSF;

namespace {

boost::filesystem::path mainFileIn(const boost::filesystem::path& directory) {
    boost::filesystem::create_directories(directory);
    return directory / "analysis.qsf";
}

boost::filesystem::path sideFile(boost::filesystem::path mainFile, const char* extension) {
    return mainFile.replace_extension(extension);
}

}  // namespace

AnalysisWriter::AnalysisWriter(const boost::filesystem::path& directory, const AnalysisHeaderData& header)
    : m_mainFilePath(mainFileIn(directory)),
      m_main(m_mainFilePath),
      m_index(sideFile(m_mainFilePath, ".qsf_idx")),
      m_extra(sideFile(m_mainFilePath, ".qsf_xtr")) {
    m_main.compressionInfo(header.compressors);
    if (header.instrument)
        m_index.entry(qsf::INSTRUMENT_INFO, 0, m_main.instrumentInfo(*header.instrument));
    m_index.entry(qsf::ANALYSIS_HEADER, 0, m_main.analysisHeader(header));
}

std::uint32_t AnalysisWriter::addSegment(const Bytes& pool) {
    ++m_segments;
    m_index.entry(qsf::RESTYPE_SEGMENT_CONDITION, m_segments - 1, m_main.segmentCondition(m_segments, pool));
    return m_segments;
}

SpectrumLocation AnalysisWriter::addSpectrum(const SpectrumData& spectrum) {
    // The index names a segment before its spectra, also where the caller has none.
    if (m_segments == 0)
        addSegment();
    const std::uint32_t number = m_spectra++;
    SpectrumLocation location{.id = m_spectra};
    location.condition = m_main.spectrumCondition(m_segments, location.id, spectrum.pool);
    m_index.entry(qsf::RESTYPE_SPECTRUM_CONDITION, number, location.condition);
    if (spectrum.profile) {
        location.scan = m_main.scan(*spectrum.profile);
        m_index.entry(qsf::RESTYPE_SCAN_SPECTRUM, number, location.scan);
    }
    if (spectrum.lines) {
        location.lines = m_main.lines(*spectrum.lines);
        m_index.entry(qsf::RESTYPE_LINE_SPECTRUM, number, location.lines);
    }
    m_extra.entry(location.id, spectrum.info);
    return location;
}

void AnalysisWriter::finish() {
    m_main.endOfConditions();
    m_main.finish();
    m_index.finish();
    m_extra.finish();
}

}  // namespace kvan::sample::native
