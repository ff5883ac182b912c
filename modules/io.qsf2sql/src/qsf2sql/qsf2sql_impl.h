#pragma once

#include "qsf2sql/qsflib/LineSpectrumBlock.h"
#include "qsf2sql/qsflib/ScanSpectrumBlock.h"
#include "qsf2sql/recalibration/spectrum_calibrations.h"

#include <calibration-access/calibration_reader_sqlite.h>
#include <calibrator-ami-reader/calibrator_ami_reader.h>
#include <compression/icompressor.h>
#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/array_id.h>
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

/// State of an open analysis. Holds the block that was read last of each kind, so that length, intensities and m/z of
/// one spectrum decode it once.
class Qsf2SqlImpl {
public:
    Qsf2SqlImpl(const logging::Logger& logger, const boost::filesystem::path& qsfFile,
                const CalibrationPrefs& calibrationPrefs, const VariablesPrefs& variablesPrefs);

    std::uint64_t getArrayLength(std::uint64_t id);
    qsf2sql_detail::NativeType getNativeStorageFormat(std::uint64_t id);
    template <class T>
    std::optional<std::span<const T>> readArrayData(std::uint64_t id, std::vector<T>& scratch);

private:
    void openCache(const VariablesPrefs& variablesPrefs);
    void initCompressor();
    void initCalibrationReader();
    void completeStateSelector();
    void openCalibratorAmi(const boost::filesystem::path& file);

    void checkId(std::uint64_t id, const char* what) const;
    void loadScanBlock(std::uint64_t offset);
    bool loadLineHeader(ArrayId id);

    template <class T>
    std::span<const T> readNativeArrayData(std::uint64_t id, std::vector<T>& scratch);
    template <class T>
    std::span<const T> lowLevelReadNativeArrayData(ArrayId id, std::vector<T>& scratch);
    template <class T, class Native>
    std::span<const T> readAs(std::uint64_t id, std::vector<T>& scratch);

    std::span<const double> readLineMz(ArrayId id, std::vector<double>& scratch);
    std::span<const double> readProfileMz(ArrayId id, std::vector<double>& scratch);

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
    KVAN::io::QSF::LineSpectrumBlock m_lines;
    std::uint64_t m_lastLineId = 0;
    bool m_lastLineFieldExists = false;
    CalibrationPrefs m_calibrationPrefs;
    std::unique_ptr<CalibratorAmiReader> m_amiReader;  // one of the two at most
    std::unique_ptr<calibration::CalibrationReaderSqlite> m_calibrationReader;
    std::optional<SpectrumCalibrations> m_calibrations;
};

}  // namespace kvan::io
