#include "qsf2sql/cache/cache_builder.h"

#include "qsf2sql/cache/cache_files.h"
#include "qsf2sql/cache/cache_validity.h"

#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <cctype>
#include <string_view>
#include <utility>

namespace kvan::io::qsf2sql::cache {

namespace {

namespace fs = boost::filesystem;
using boost::system::error_code;
using cppsqlite::CppSQLite3DB;

// The first is a file that still grows, removed by the next builder if its owner was killed; the second a whole cache.
constexpr std::string_view g_privatePattern = "qsf-cache-%%%%-%%%%-%%%%-%%%%.building";
constexpr char g_temporaryPattern[] = "%%%%-%%%%-%%%%-%%%%-qsf.sqlite";

bool isPrivateName(const std::string& name) {
    const auto matches = [](char pattern, char given) {
        return pattern == '%' ? std::isxdigit(static_cast<unsigned char>(given)) != 0 : pattern == given;
    };
    return std::equal(g_privatePattern.begin(), g_privatePattern.end(), name.begin(), name.end(), matches);
}

fs::path directoryOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// A directory that cannot be listed keeps what lies in it.
void removeAbandonedFiles(const fs::path& directory) {
    error_code fault;
    for (fs::directory_iterator entry(directory, fault), end; !fault && entry != end; entry.increment(fault)) {
        if (isPrivateName(sys::pathToUtf8(entry->path().filename())))
            sys::removeAbandonedPrivateFile(entry->path());
    }
}

/// Puts the file in the place of the cache. A journal of the old cache would be played back into the new one, so it
/// goes first.
error_code replaceCache(const fs::path& cacheFile, sys::PrivateFile& file) {
    error_code fault;
    for (const char* companion : {"-journal", "-wal", "-shm"}) {
        fs::remove(fs::path(cacheFile) += companion, fault);
        if (fault)
            return fault;
    }
    return file.moveTo(cacheFile);
}

}  // namespace

// In come the main file and what the caller wants; out comes an open cache that is whole, or an exception.
//
// Nothing ever grows at the path of the cache itself: a reader finds the old cache, the new one or none, and of two
// builders the later one replaces the file of the earlier one. The private file is made first, since making it is the
// only sure test of whether the directory can be written; a share mounted for reading has modes that say otherwise.
//
// A bad native file leaves nothing at the path. Any other failure leaves an empty database there, which no open takes
// for a cache and the next one replaces.
CacheBuilder::CacheBuilder(const fs::path& qsfFile, const VariablesPrefs& settings, const CacheFill& fill)
    : m_logger(logging::Logger::getLogger("kvan.io.qsf2sql")), m_qsfFile(qsfFile), m_settings(settings), m_fill(fill) {}

/// The private file in which the cache will grow; null where none can be made and written.
std::unique_ptr<sys::PrivateFile> CacheBuilder::probeAnalysisDirectory(const fs::path& cacheFile) {
    const fs::path directory = directoryOf(cacheFile);
    const bool replaces = typeAt(cacheFile) != fs::file_not_found;
    if (replaces) {
        KVAN_LOG(m_logger, TRACE) << "Trying to remove existing cache '" << sys::pathToUtf8(cacheFile) << "'";
    }
    removeAbandonedFiles(directory);
    error_code fault;
    auto file = sys::PrivateFile::create(directory / fs::path(g_privatePattern.begin(), g_privatePattern.end()), fault);
    if (file && file->append("I can write!\n") && file->clear())
        return file;
    if (!file && replaces) {
        logRefusal(cacheFile, fault);  // where no file can be made, none can be removed either
    } else {
        const fs::path analysisDirectory = fs::absolute(m_qsfFile).parent_path();
        KVAN_LOG(m_logger, INFO) << "Directory of QSF file, '" << sys::pathToUtf8(analysisDirectory)
                                 << "', write-protected.";
    }
    return nullptr;
}

std::unique_ptr<CppSQLite3DB> CacheBuilder::generateInAnalysisDirectory(const fs::path& cacheFile) {
    checkIfQsfExists(m_qsfFile);
    const auto file = probeAnalysisDirectory(cacheFile);
    if (!file)
        return nullptr;
    KVAN_LOG(m_logger, INFO) << "Generating new SQLite cache in analysis directory: " << sys::pathToUtf8(cacheFile);
    try {
        fillDatabase(file->path());
    } catch (const Qsf2SqlFileFormatError&) {
        error_code ignored;
        fs::remove(cacheFile, ignored);
        throw;
    } catch (...) {
        if (file->clear())
            replaceCache(cacheFile, *file);
        throw;
    }
    // Somebody may hold the old cache open in a way that keeps it where it is; the caller then gets a cache of its own.
    if (const error_code fault = replaceCache(cacheFile, *file)) {
        logRefusal(cacheFile, fault);
        return nullptr;
    }
    auto database = openCache(cacheFile);
    // Another builder, for a caller with fewer wishes, may have been later.
    const bool isMine = isCompatible(*database, m_settings.mode == VariablesPrefs::All, m_settings.requested);
    return isMine ? std::move(database) : nullptr;
}

std::unique_ptr<CppSQLite3DB> CacheBuilder::generateInTemporaryDirectory(fs::path& cacheFile) {
    checkIfQsfExists(m_qsfFile);
    cacheFile = fs::temp_directory_path() / fs::unique_path(g_temporaryPattern);
    KVAN_LOG(m_logger, INFO) << "Generating new SQLite cache in tmpdir: " << sys::pathToUtf8(cacheFile);
    error_code fault;
    const auto file = sys::PrivateFile::create(cacheFile, fault);
    if (!file)
        throwCannotOpenCache();
    fillDatabase(cacheFile);
    auto database = openCache(cacheFile);
    file->keep();
    return database;
}

void CacheBuilder::fillDatabase(const fs::path& file) {
    CppSQLite3DB database;
    // Nobody else knows the file, so it needs neither locks nor a journal on disk.
    database.open(sys::pathToUtf8(file), CppSQLite3DB::OpenMode::Private);
    database.execDML("BEGIN TRANSACTION");
    m_fill(m_qsfFile, database, m_settings.mode == VariablesPrefs::All, m_settings.requested);
    database.execDML("COMMIT TRANSACTION");
    database.close();
}

void CacheBuilder::logRefusal(const fs::path& cacheFile, const error_code& fault) {
    KVAN_LOG(m_logger, TRACE) << "Can't delete: "
                              << fs::filesystem_error("boost::filesystem::remove", cacheFile, fault).what();
}

}  // namespace kvan::io::qsf2sql::cache
