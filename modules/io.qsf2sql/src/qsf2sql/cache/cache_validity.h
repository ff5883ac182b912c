#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <boost/filesystem/path.hpp>
#include <string>
#include <unordered_set>

namespace kvan::io::qsf2sql::cache {

/// Whether the cache has the schema of this system and the variables asked for. What cannot be read makes it
/// incompatible; a lock that another process holds for too long throws `CppSQLite3Exception`.
bool isCompatible(cppsqlite::CppSQLite3DB& database, bool wantAll, const std::unordered_set<std::string>& requested);

/// Whether the cache was made from native files of the sizes that they have now. Throws `Qsf2SqlFileNotFoundError`
/// without a main file, `Qsf2SqlCacheError` when no sizes are recorded, `boost::bad_lexical_cast` when they are no
/// numbers, `boost::filesystem::filesystem_error` when a side file is missing.
bool isConsistentSQLiteCache(cppsqlite::CppSQLite3DB& database, const boost::filesystem::path& qsfFile);

}  // namespace kvan::io::qsf2sql::cache
