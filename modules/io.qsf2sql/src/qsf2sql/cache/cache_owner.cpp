#include "qsf2sql/cache/cache_owner.h"

#include <logger/logger.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>

namespace kvan::io::qsf2sql::cache {

// Both run when the last owner of a storage's connection lets go, often inside a destructor, so nothing may escape. The
// connection is closed before the file goes: a system that keeps open files would refuse to remove it.

void CacheCloser::operator()(cppsqlite::CppSQLite3DB* database) const noexcept {
    std::default_delete<cppsqlite::CppSQLite3DB>()(database);
}

CacheDeleter::CacheDeleter(const boost::filesystem::path& cacheFile)
    : m_cacheFile(std::make_shared<const boost::filesystem::path>(cacheFile)) {}

void CacheDeleter::operator()(cppsqlite::CppSQLite3DB* database) const noexcept {
    CacheCloser()(database);
    if (!m_cacheFile)
        return;
    try {
        const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql");
        KVAN_LOG(logger, INFO) << "Deleting temporary SQLite database '" << sys::pathToUtf8(*m_cacheFile)
                               << "' after last user finished.";
        boost::filesystem::remove(*m_cacheFile);
    } catch (...) {
        // Runs inside destructors: a file that cannot be removed stays.
    }
}

}  // namespace kvan::io::qsf2sql::cache
