#pragma once

#include "qsf2sql/cache/cache_builder.h"

#include <cppsqlite/CppSQLite3.h>
#include <qsf2sql/variables_prefs.h>

#include <boost/filesystem/path.hpp>
#include <memory>

namespace kvan::io::qsf2sql::cache {

/// The open cache of the analysis whose main file is `qsfFile`: the one beside it if that still fits the native files
/// and the settings, else a new one. A cache that fits is taken without a look into the native files.
///
/// `cacheFile` becomes the path of the cache, as relative or absolute as `qsfFile` is given. `isTemporary`, which may
/// be null, becomes true when the cache lies in the system's temporary directory: the caller removes it then.
///
/// Throws `Qsf2SqlCacheError` for each failure of SQLite, `Qsf2SqlFileNotFoundError` without a main file, what
/// `isConsistentSQLiteCache` throws for the sizes, and what `fill` throws for the native files.
std::unique_ptr<cppsqlite::CppSQLite3DB> getValidSQLiteCache(const boost::filesystem::path& qsfFile,
                                                             boost::filesystem::path& cacheFile, bool* isTemporary,
                                                             const VariablesPrefs& settings, const CacheFill& fill);

}  // namespace kvan::io::qsf2sql::cache
