#include "qsf2sql/cache/cache_validity.h"

#include "qsf2sql/cache/cache_files.h"
#include "qsf2sql/cache/cache_schema.h"

#include <cppsqlite/plain_tables.h>
#include <logger/logger.h>
#include <qsf2sql/errors.h>

#include <boost/filesystem/operations.hpp>
#include <boost/lexical_cast.hpp>
#include <boost/throw_exception.hpp>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace kvan::io::qsf2sql::cache {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;
using cppsqlite::CppSQLite3Exception;
using cppsqlite::CppSQLite3Query;
using cppsqlite::CppSQLite3Statement;

constexpr char g_noSchema[] = "The SQLite cache has no readable schema information.";
constexpr char g_noRequested[] = "The SQLite cache has no readable RequestedVariables information.";

/// Runs `read`; when the database cannot be read, writes `fault` to the log and gives nothing. A database that another
/// process holds locked says nothing about what it holds, so that goes on to the caller.
template <class Read>
auto readOrReport(const logging::Logger& logger, const char* fault, Read read) -> decltype(read()) {
    try {
        if (auto value = read())
            return value;
    } catch (const CppSQLite3Exception& exception) {
        if (exception.errorCode() == SQLITE_BUSY)
            throw;
    }
    KVAN_LOG(logger, DEBUG) << fault;
    return {};
}

std::optional<std::string> schemaVersion(CppSQLite3DB& database) {
    if (findComputedTable(database, {"Info", "RequestedVariables", "Spectra", "AcquisitionKeys", "Transformators"}))
        return {};
    const CppSQLite3Query query = database.execQuery("SELECT SchemaVersion FROM Info");
    if (query.eof() || query.fieldIsNull(0))
        return {};
    return std::string(query.fieldValue(0));
}

/// Those of the names that the cache was not asked for when it was made.
std::vector<std::string> notRequestedBefore(CppSQLite3DB& database, const std::unordered_set<std::string>& names) {
    std::vector<std::string> missing;
    if (names.empty())
        return missing;
    CppSQLite3Statement count =
        database.compileStatement("SELECT COUNT(*) From RequestedVariables WHERE RequestedVariable = ?");
    for (const std::string& name : names) {
        count.bindBorrowed(1, name);
        if (count.execQuery().getInt64Field(0) == 0)
            missing.push_back(name);
    }
    return missing;
}

std::uint64_t sizeBeside(fs::path file, const char* extension) {
    return fs::file_size(file.replace_extension(extension));
}

}  // namespace

// Three questions in this order, each of which may end the matter: is the schema this system's own, letter for letter;
// does the cache hold all variables; was it asked for the names that are wanted now. What cannot be read is answered
// with no, and the cache is made anew, since anybody may write that file. Its tables are read only where they are plain
// ones: a view in their place would compute its rows by SQL of somebody else.
bool isCompatible(CppSQLite3DB& database, bool wantAll, const std::unordered_set<std::string>& requested) {
    const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql");
    const auto version = readOrReport(logger, g_noSchema, [&] { return schemaVersion(database); });
    if (!version)
        return false;
    if (*version != g_schemaVersion) {
        KVAN_LOG(logger, DEBUG) << "The SQLite cache has an incompatible schema version (" << *version << ").";
        return false;
    }
    const auto hasAll = readOrReport(logger, g_noSchema, [&] {
        return std::optional<bool>(database.execScalar("SELECT AllVariables FROM Info") != 0);
    });
    if (!hasAll || *hasAll)
        return hasAll.has_value();
    if (wantAll) {
        KVAN_LOG(logger, DEBUG) << "Caller requests all variables, but SQLite cache has only minimal set.";
        return false;
    }
    const auto missing =
        readOrReport(logger, g_noRequested, [&] { return std::optional(notRequestedBefore(database, requested)); });
    if (missing && !missing->empty()) {
        KVAN_LOG(logger, DEBUG) << "Caller requested the optional variable '" << missing->front()
                                << "' not requested previously in the SQLite cache.";
    }
    return missing && missing->empty();
}

// Sizes only: times change when data are copied, and reading the contents would cost what the cache saves. Native files
// of other contents and equal sizes therefore pass. A side file that is missing is a failure and no difference: a new
// cache could not be made without it either.
bool isConsistentSQLiteCache(CppSQLite3DB& database, const fs::path& qsfFile) {
    checkIfQsfExists(qsfFile);
    const CppSQLite3Query query = database.execQuery("SELECT QSFSize, XTRSize, IDXSize FROM Info");
    if (query.eof())
        BOOST_THROW_EXCEPTION(Qsf2SqlCacheError("Can't read consistency info from SQLite cache."));
    // Through text, so that what is no number is refused instead of read as 0.
    const auto recorded = [&query](int column) {
        return boost::lexical_cast<std::int64_t>(std::string(query.fieldValue(column)));
    };
    const std::int64_t mainSize = recorded(0);
    const std::int64_t extraSize = recorded(1);
    const std::int64_t indexSize = recorded(2);
    if (std::cmp_equal(mainSize, fs::file_size(qsfFile)) &&
        std::cmp_equal(indexSize, sizeBeside(qsfFile, ".qsf_idx")) &&
        std::cmp_equal(extraSize, sizeBeside(qsfFile, ".qsf_xtr")))
        return true;
    KVAN_LOG(logging::Logger::getLogger("kvan.io.qsf2sql"), INFO)
        << "The SQLite cache was generated for differently-sized QSF/XTR/IDX => inconsistent.";
    return false;
}

}  // namespace kvan::io::qsf2sql::cache
