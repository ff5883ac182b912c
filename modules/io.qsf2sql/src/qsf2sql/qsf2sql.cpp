#include "qsf2sql/cache/sqlite_cache.h"
#include "qsf2sql/cache_generator.h"
#include "qsf2sql/qsf2sql_impl.h"

#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/storage.h>
#include <sysutils/platform.h>

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

std::uint64_t Qsf2Sql::getArrayLength(std::uint64_t id) {
    return m_impl->getArrayLength(id);
}

qsf2sql_detail::NativeType Qsf2Sql::getNativeStorageFormat(std::uint64_t id) {
    return m_impl->getNativeStorageFormat(id);
}

template <class T>
std::optional<std::span<const T>> Qsf2Sql::readArrayData(std::uint64_t id, std::vector<T>& scratch) {
    return m_impl->readArrayData<T>(id, scratch);
}

template std::optional<std::span<const double>> Qsf2Sql::readArrayData(std::uint64_t, std::vector<double>&);
template std::optional<std::span<const float>> Qsf2Sql::readArrayData(std::uint64_t, std::vector<float>&);
template std::optional<std::span<const unsigned int>> Qsf2Sql::readArrayData(std::uint64_t, std::vector<unsigned int>&);

}  // namespace kvan::io
