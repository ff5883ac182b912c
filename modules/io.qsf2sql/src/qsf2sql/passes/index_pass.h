#pragma once

#include "qsf2sql/passes/number_set.h"

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>

#include <boost/filesystem/path.hpp>

namespace kvan::io::qsf2sql::passes {

/// Pass 2: reads the index file and inserts one row of `Spectra` with Id, segment and array Ids for each spectrum
/// condition. Gives the numbers, from 0, of the spectra that have neither profile nor line data.
///
/// Throws `Qsf2SqlCannotOpenFileError`, `Qsf2SqlFileFormatError` also for an offset that no array Id holds, and
/// `CppSQLite3Exception`.
NumberSet readIndexFile(const boost::filesystem::path& indexFile, cppsqlite::CppSQLite3DB& database,
                        const logging::Logger& logger);

}  // namespace kvan::io::qsf2sql::passes
