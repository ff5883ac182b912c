#include "qsf2sql/cache/sqlite_cache.h"

#include "qsf2sql/cache/cache_files.h"
#include "qsf2sql/cache/cache_validity.h"

#include <logger/logger.h>
#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

#include <boost/throw_exception.hpp>

namespace kvan::io::qsf2sql::cache {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;
using cppsqlite::CppSQLite3Exception;

[[noreturn]] void throwConvertedCppSQLite3Exception(const CppSQLite3Exception& exception) {
    BOOST_THROW_EXCEPTION(Qsf2SqlCacheError(std::string("Caught unexpected CppSQLite3Exception: ") + exception.what()));
}

/// The cache that stands at `cacheFile`; null if it must be made anew.
std::unique_ptr<CppSQLite3DB> reuseCache(const fs::path& qsfFile, const fs::path& cacheFile,
                                         const VariablesPrefs& settings) {
    const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql");
    auto database = openCache(cacheFile);
    if (!isCompatible(*database, settings.mode == VariablesPrefs::All, settings.requested)) {
        KVAN_LOG(logger, DEBUG) << "Existing SQLite cache '" << sys::pathToUtf8(cacheFile)
                                << "' found to be incompatible.";
        return nullptr;
    }
    if (!isConsistentSQLiteCache(*database, qsfFile)) {
        KVAN_LOG(logger, INFO) << "Existing SQLite cache '" << sys::pathToUtf8(cacheFile)
                               << "' was generated for differently-sized QSF/XTR/IDX => inconsistent.";
        return nullptr;
    }
    KVAN_LOG(logger, DEBUG) << "Existing SQLite cache seems to be okay; re-using.";
    return database;
}

}  // namespace

// A cache that stands beside the main file is asked two things before it is taken: whether it fits the settings, then
// whether it fits the native files. The first that fails sends the caller to the builder; the log says which it was.
//
// SQLite's own failures become one type here, with their text. A file that SQLite cannot open is such a failure and
// stays where it is; one that opens and holds no cache is replaced.
std::unique_ptr<CppSQLite3DB> getValidSQLiteCache(const fs::path& qsfFile, fs::path& cacheFile, bool* isTemporary,
                                                  const VariablesPrefs& settings, const CacheFill& fill) {
    bool unasked = false;
    bool& temporary = isTemporary == nullptr ? unasked : *isTemporary;
    temporary = false;
    cacheFile = cachePathBeside(qsfFile);
    try {
        // A link is no cache of this analysis, wherever it leads.
        const fs::file_type standing = typeAt(cacheFile);
        if (standing != fs::file_not_found && standing != fs::symlink_file) {
            if (auto database = reuseCache(qsfFile, cacheFile, settings))
                return database;
        }
        CacheBuilder builder(qsfFile, settings, fill);
        if (auto database = builder.generateInAnalysisDirectory(cacheFile))
            return database;
        temporary = true;
        return builder.generateInTemporaryDirectory(cacheFile);
    } catch (const CppSQLite3Exception& exception) {
        throwConvertedCppSQLite3Exception(exception);
    }
}

}  // namespace kvan::io::qsf2sql::cache
