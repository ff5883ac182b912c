#pragma once

#include "cppsqlite/CppSQLite3.h"

#include <boost/filesystem/path.hpp>
#include <string>
#include <unordered_set>

namespace kvan::io {

/// Fills an open, empty database with the whole cache of an analysis. The caller has begun a transaction and commits
/// it.
///
/// Throws `Qsf2SqlFileFormatError` and `Qsf2SqlCannotOpenFileError` for the native files, `CppSQLite3Exception` for the
/// database, `std::runtime_error` where the conditions of the main file contradict one another.
void generateCache(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database, bool allVariables,
                   const std::unordered_set<std::string>& requestedVariables);

}  // namespace kvan::io
