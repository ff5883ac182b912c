#include "qsf2sql/qsf2sql_impl.h"

#include "qsf2sql/cache/cache_owner.h"
#include "qsf2sql/cache/sqlite_cache.h"
#include "qsf2sql/cache_generator.h"

#include <compression/compressor_registry.h>
#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

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
      m_reader(qsfFile, QSFBlockedReader::Access::Arrays) {
    try {
        openCache(variablesPrefs);
        initCompressor();
        initCalibrationReader(calibrationPrefs);
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

// Each store that was asked in vain has its line at once, before what the next one logs. With no store in force the
// calibrations stored at acquisition are, which is worth a line only to somebody who wanted another.
void Qsf2SqlImpl::initCalibrationReader(const CalibrationPrefs& prefs) {
    using qsf2sql::recalibration::Store;
    m_calibrationChoice =
        qsf2sql::recalibration::chooseCalibration(m_qsfFile.parent_path(), prefs, *m_database, [this](Store store) {
            KVAN_LOG(m_logger, INFO) << "no state found in "
                                     << (store == Store::Database ? "CalibrationReaderSqlite" : "Calibrator.ami");
        });
    const bool wanted = prefs.stateSelector || prefs.useCalibratorAmi;
    if (wanted && m_calibrationChoice.isNative()) {
        KVAN_LOG(m_logger, INFO) << "no re-calibration found; using calibration state from QSF";
    }
    m_calibrations.emplace(*m_database, m_calibrationChoice.archive.get(), m_calibrationChoice.database.get());
}

}  // namespace kvan::io
