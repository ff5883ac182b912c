#pragma once

#include <cppsqlite/CppSQLite3.h>

#include <boost/filesystem/path.hpp>
#include <string>
#include <unordered_set>

namespace kvan::io {

/// One generation of a cache: four passes over the native files of an analysis.
///
///     1  main file up to its two important blocks    Properties, reference calibrations, declared variables
///     2  index file                                  Spectra: Id, segment, array Ids
///     3  extra file                                  Spectra: the rest; Transformators, Steps, AcquisitionKeys
///     4  main file from there on                     the variables that segments and spectra set
///
/// Spectra data are never read, so the time and the memory go with the number of spectra.
struct CacheGenerator {
    /// Fills an open, empty database with the whole cache; nothing is left to do afterwards, and no statement of the
    /// connection stays alive. The caller has begun a transaction and commits it.
    ///
    /// Throws `Qsf2SqlFileFormatError` and `Qsf2SqlCannotOpenFileError` for the native files, `CppSQLite3Exception` for
    /// the database, `std::runtime_error` where the conditions of the main file contradict one another,
    /// `std::out_of_range` for an impossible acquisition time, `std::bad_cast` for a value whose variable is declared
    /// once more with another type; what a reference calibration that cannot be read and a calibration that fails at an
    /// end of the acquired range throw, and `boost::math::rounding_error` where that end is no 32-bit mass.
    static void fillSqlCacheFromQsf(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database,
                                    bool allVariables, const std::unordered_set<std::string>& requestedVariables);
};

}  // namespace kvan::io
