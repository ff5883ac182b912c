#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <boost/filesystem/operations.hpp>
#include <memory>

namespace kvan::io::qsf2sql::cache {

/// The cache's place beside the main file, as relative or absolute as that is given.
boost::filesystem::path cachePathBeside(const boost::filesystem::path& qsfFile);

/// Throws `Qsf2SqlFileNotFoundError` unless the path leads to a regular file.
void checkIfQsfExists(const boost::filesystem::path& qsfFile);

/// What stands at the path itself, links not followed; `file_not_found` also where that cannot be found out.
boost::filesystem::file_type typeAt(const boost::filesystem::path& path);

/// Opens the cache that stands at `cacheFile`, as a file that anybody may have written. Reads nothing of it. Anything
/// but a regular file is refused as SQLite refuses a file that it cannot open: `CppSQLite3Exception`.
std::unique_ptr<cppsqlite::CppSQLite3DB> openCache(const boost::filesystem::path& cacheFile);

/// The exception of a file that SQLite cannot open.
[[noreturn]] void throwCannotOpenCache();

}  // namespace kvan::io::qsf2sql::cache
