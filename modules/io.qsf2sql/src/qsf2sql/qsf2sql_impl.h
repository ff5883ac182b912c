#pragma once

#include "qsf2sql/qsflib/ScanSpectrumBlock.h"
#include "qsf2sql/recalibration/spectrum_calibrations.h"

#include <compression/icompressor.h>
#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/array_id.h>
#include <qsf2sql/calibration_choice.h>
#include <qsf2sql/calibration_prefs.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <qsf2sql/variables_prefs.h>

#include <boost/filesystem/path.hpp>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kvan::io {

/// State of an open analysis, and the steps of a read. Remembers the scan and the line field that were asked for last,
/// so that length, intensities and m/z of one spectrum look at the file once.
class Qsf2SqlImpl {
public:
    Qsf2SqlImpl(const logging::Logger& logger, const boost::filesystem::path& qsfFile,
                const CalibrationPrefs& calibrationPrefs, const VariablesPrefs& variablesPrefs);

    /// The Id, with a line in the trace that begins with `what`. Throws `Qsf2SqlCacheError` for one without a kind.
    ArrayId checkId(std::uint64_t id, const char* what) const;
    /// The lines about a read as `T` of an array that is stored as `native`.
    template <class T>
    void traceRead(ArrayId id, qsf2sql_detail::NativeType native) const;

    /// Where the array lies; of m/z, how many there are, as doubles. Throws `Qsf2SqlFileFormatError`, also for a scan
    /// of signed integers, and `std::runtime_error` "Shouldn't happen." for a kind that is none.
    StoredArray locate(ArrayId id);

    /// The scan at `offset` in the main file, decoded; stays until another one is asked for.
    const KVAN::io::QSF::ScanSpectrumBlock& scanAt(std::uint64_t offset);

    /// Fills `to`, of `stored.count` elements, with the array that `locate` has found for `id`, converted from its
    /// stored type. Nothing is written to `to` before all that can fail is done.
    template <class T>
    void fetch(ArrayId id, const StoredArray& stored, std::span<T> to);

private:
    void openCache(const VariablesPrefs& variablesPrefs);
    void initCompressor();
    void initCalibrationReader(const CalibrationPrefs& prefs);

    void traceId(ArrayId id, const char* what) const;
    const StoredArray& lineField(ArrayId id);

    /// The elements of a line field as they are stored; `T` is their type.
    template <class T>
    std::span<const T> lowLevelReadNativeArrayData(const StoredArray& stored, std::vector<T>& elements);

    // In Th, in `m_doubles`.
    std::span<const double> lineMz(ArrayId id);
    std::span<const double> profileMz(ArrayId id);

    logging::Logger m_logger;
    logging::Logger m_idLogger;
    boost::filesystem::path m_qsfFile;
    QSFBlockedReader m_reader;
    std::shared_ptr<cppsqlite::CppSQLite3DB> m_database;
    boost::filesystem::path m_cacheFile;
    std::string m_compressorId;  // as the cache has it; empty: the analysis has no compressor
    std::shared_ptr<compression::ICompressor> m_compressor;
    KVAN::io::QSF::ScanSpectrumBlock m_scan;
    std::uint64_t m_lastScanOffset = 0;  // no block lies at 0
    StoredArray m_lastLineField;
    std::uint64_t m_lastLineId = 0;  // no Id is 0
    std::vector<double> m_doubles;   // line fields and m/z on their way; keep their capacity
    std::vector<float> m_floats;
    qsf2sql::recalibration::CalibrationChoice m_calibrationChoice;
    std::optional<qsf2sql::recalibration::SpectrumCalibrations> m_calibrations;
};

}  // namespace kvan::io
