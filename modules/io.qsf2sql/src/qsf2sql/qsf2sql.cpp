#include "qsf2sql/cache/sqlite_cache.h"
#include "qsf2sql/cache_generator.h"
#include "qsf2sql/qsf2sql_impl.h"

#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/storage.h>
#include <sysutils/platform.h>

// The public face: all work is the implementation's, so that callers see none of its headers. The line of the trace
// comes before the open, so that an open that fails has its path in the log.
namespace kvan::io {

Qsf2Sql::Qsf2Sql(const boost::filesystem::path& qsfFile, const std::optional<CalibrationPrefs>& calibrationPrefs,
                 const VariablesPrefs& variablesPrefs)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql")) {
    KVAN_LOG(m_logger, TRACE) << "Trying to open QSF file: " << sys::pathToUtf8(qsfFile);
    m_impl =
        std::make_unique<Qsf2SqlImpl>(m_logger, qsfFile, calibrationPrefs.value_or(CalibrationPrefs{}), variablesPrefs);
}

Qsf2Sql::~Qsf2Sql() = default;

std::unique_ptr<cppsqlite::CppSQLite3DB> Qsf2Sql::getValidSQLiteCache(const boost::filesystem::path& qsfFile,
                                                                      boost::filesystem::path& cacheFile,
                                                                      bool* isTemporary,
                                                                      const VariablesPrefs& settings) {
    return qsf2sql::cache::getValidSQLiteCache(qsfFile, cacheFile, isTemporary, settings,
                                               &CacheGenerator::fillSqlCacheFromQsf);
}

}  // namespace kvan::io
