#pragma once

#include <cppsqlite/CppSQLite3.h>
#include <logger/logger.h>
#include <qsf2sql/variables_prefs.h>

#include <boost/filesystem/path.hpp>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>

namespace kvan::sys {
class PrivateFile;
}

namespace kvan::io::qsf2sql::cache {

/// Fills an open, empty database with the cache of the main file, inside a transaction that its caller begins and
/// commits. Leaves no statement of the connection alive.
using CacheFill = std::function<void(const boost::filesystem::path& mainFile, cppsqlite::CppSQLite3DB& database,
                                     bool allVariables, const std::unordered_set<std::string>& requestedVariables)>;

/// Makes a new cache: beside the main file, or in the system's temporary directory where that cannot be.
///
/// A cache grows in a private file and gets its name when it is whole, so that any number of processes may build, open
/// and replace the cache of one analysis at the same time. What a killed builder leaves is removed by the next.
class CacheBuilder {
public:
    /// Keeps references to its arguments.
    CacheBuilder(const boost::filesystem::path& qsfFile, const VariablesPrefs& settings, const CacheFill& fill);

    // Both throw what the fill step throws.

    /// Makes the cache at its place beside the main file and opens it; null where the system refuses that. After
    /// `Qsf2SqlFileFormatError` nothing stands at `cacheFile`, after any other failure an empty database.
    std::unique_ptr<cppsqlite::CppSQLite3DB> generateInAnalysisDirectory(const boost::filesystem::path& cacheFile);

    /// Makes the cache in the system's temporary directory and opens it. `cacheFile` becomes its path; somebody must
    /// remove the file. It goes with any failure.
    std::unique_ptr<cppsqlite::CppSQLite3DB> generateInTemporaryDirectory(boost::filesystem::path& cacheFile);

private:
    std::unique_ptr<sys::PrivateFile> probeAnalysisDirectory(const boost::filesystem::path& cacheFile);
    void fillDatabase(const boost::filesystem::path& file);
    void logRefusal(const boost::filesystem::path& cacheFile, const boost::system::error_code& fault);

    logging::Logger m_logger;
    const boost::filesystem::path& m_qsfFile;
    const VariablesPrefs& m_settings;
    const CacheFill& m_fill;
};

}  // namespace kvan::io::qsf2sql::cache
