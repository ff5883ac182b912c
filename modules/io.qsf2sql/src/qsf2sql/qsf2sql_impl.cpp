#include "qsf2sql/qsf2sql_impl.h"

#include "qsf2sql/cache/cache_owner.h"
#include "qsf2sql/cache/sqlite_cache.h"
#include "qsf2sql/cache_generator.h"

#include <compression/compressor_registry.h>
#include <cppsqlite/simple_checked_query.h>
#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>
#include <boost/uuid/string_generator.hpp>

// An open in the order of its steps: the main file, the cache (made if none fits), the compressor that the cache names,
// the source of calibrations. A step that fails unwinds those before it, and a cache that was made in the temporary
// directory goes with them; so an open succeeds whole or leaves nothing.
//
// Destruction runs against the order of the members: the calibrations and their readers before the database, which lets
// go of the cache, and the native file and the loggers last.
namespace kvan::io {

namespace cache = qsf2sql::cache;

Qsf2SqlImpl::Qsf2SqlImpl(const logging::Logger& logger, const boost::filesystem::path& qsfFile,
                         const CalibrationPrefs& calibrationPrefs, const VariablesPrefs& variablesPrefs)
    : m_logger(logger),
      m_idLogger(logging::Logger::getLogger("kvan.io.qsf2sql.id")),
      m_qsfFile(qsfFile),
      m_reader(qsfFile, QSFBlockedReader::Access::Arrays),
      m_calibrationPrefs(calibrationPrefs) {
    try {
        openCache(variablesPrefs);
        initCompressor();
        initCalibrationReader();
    } catch (const cppsqlite::CppSQLite3Exception& fault) {
        BOOST_THROW_EXCEPTION(Qsf2SqlCacheError(std::string("CppSQLite3Exception: ") + fault.what()));
    }
}

void Qsf2SqlImpl::openCache(const VariablesPrefs& variablesPrefs) {
    bool isTemporary = false;
    auto database = cache::getValidSQLiteCache(m_qsfFile, m_cacheFile, &isTemporary, variablesPrefs,
                                               &CacheGenerator::fillSqlCacheFromQsf);
    if (isTemporary) {
        cache::CacheDeleter deleter(m_cacheFile);
        m_database = std::shared_ptr<cppsqlite::CppSQLite3DB>(database.release(), std::move(deleter));
    } else {
        m_database = std::shared_ptr<cppsqlite::CppSQLite3DB>(database.release(), cache::CacheCloser());
    }
    KVAN_LOG(m_logger, TRACE) << "Using SQLite cache: " << sys::pathToUtf8(m_cacheFile);
}

// An empty text is a compressor as well: the analysis has none, and all its scans are plain. A missing one is a cache
// that nobody can read packed scans by.
void Qsf2SqlImpl::initCompressor() {
    auto query = m_database->execQuery("SELECT Compressor FROM Info");
    if (query.eof() || query.fieldIsNull(0))
        BOOST_THROW_EXCEPTION(Qsf2SqlCacheError("Compressor ID not in SQLite cache."));
    m_compressorId = query.fieldValue(0);
    if (!m_compressorId.empty())
        m_compressor = compression::getCompressor(boost::uuids::string_generator()(m_compressorId));
}

// The database beats the archive: the archive is looked for only where the database has no state that fits. Of the two
// readers one is kept at most; with none, the calibrations stored at acquisition are in force, which is worth a line
// only to somebody who wanted another.
void Qsf2SqlImpl::initCalibrationReader() {
    const boost::filesystem::path directory = m_qsfFile.parent_path();
    if (m_calibrationPrefs.stateSelector) {
        completeStateSelector();
        m_calibrationReader = calibration::CalibrationReaderSqlite::find(directory, *m_calibrationPrefs.stateSelector);
        if (!m_calibrationReader) {
            KVAN_LOG(m_logger, INFO) << "no state found in CalibrationReaderSqlite";
        }
    }
    if (!m_calibrationReader && m_calibrationPrefs.useCalibratorAmi) {
        openCalibratorAmi(directory / "Calibrator.ami");
        if (!m_amiReader) {
            KVAN_LOG(m_logger, INFO) << "no state found in Calibrator.ami";
        }
    }
    const bool wanted = m_calibrationPrefs.stateSelector || m_calibrationPrefs.useCalibratorAmi;
    if (wanted && !m_calibrationReader && !m_amiReader) {
        KVAN_LOG(m_logger, INFO) << "no re-calibration found; using calibration state from QSF";
    }
    m_calibrations.emplace(*m_database, m_amiReader.get(), m_calibrationReader.get());
}

// Anything at this place but nothing counts as an archive. One that cannot be read fails the open: whoever wants
// re-calibrated m/z must not get others without knowing.
void Qsf2SqlImpl::openCalibratorAmi(const boost::filesystem::path& file) {
    boost::system::error_code ignored;
    if (boost::filesystem::status(file, ignored).type() == boost::filesystem::file_not_found)
        return;
    m_amiReader = std::make_unique<CalibratorAmiReader>();
    if (!m_amiReader->open(file))
        BOOST_THROW_EXCEPTION(std::runtime_error("Couldn't open AMI file " + sys::pathToUtf8(file)));
}

// Which state of the database fits depends on the polarities and the number of spectra, of which the cache knows. A
// polarity that is not negative counts as positive.
void Qsf2SqlImpl::completeStateSelector() {
    if (!m_calibrationPrefs.stateSelector->needsAnalysisInfo())
        return;
    bool positive = false;
    bool negative = false;
    auto polarities = m_database->execQuery("SELECT Polarity FROM AcquisitionKeys");
    if (polarities.eof())
        BOOST_THROW_EXCEPTION(std::runtime_error("Missing polarity information!"));
    for (; !polarities.eof(); polarities.nextRow())
        (polarities.getIntField(0) == POLARITY_NEGATIVE ? negative : positive) = true;
    polarities.finalize();
    const auto spectra = cppsqlite::simpleCheckedQuery<std::int64_t>(*m_database, "SELECT MAX(Id) FROM Spectra");
    m_calibrationPrefs.stateSelector->setAnalysisInfo(spectra, positive, negative);
}

}  // namespace kvan::io
