#include "analysis.h"

#include <io/qsf2sql/qsf2sql.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <stdexcept>

// An analysis as the subcommands see it goes the way of any other program: the path of the cache and the arrays come
// through the exported functions, the metadata by SQL out of the cache. A cache in another directory than the main
// file's is one that the library had to make in the temporary directory; then it is this process's to remove.

namespace qsf2sql_tool {

namespace fs = boost::filesystem;

namespace {

constexpr std::uint64_t g_firstProfileKind = 64;

[[noreturn]] void throwLastError() {
    std::string text(qsf2sql_get_last_error_string(nullptr, 0), '\0');
    qsf2sql_get_last_error_string(text.data(), static_cast<std::uint32_t>(text.size()));
    // The size counts the terminator.
    text.pop_back();
    throw std::runtime_error(text);
}

std::string mainFileOf(const std::string& path) {
    const fs::path given = kvan::sys::pathFromUtf8(path);
    boost::system::error_code none;
    return fs::is_directory(given, none) ? kvan::sys::pathToUtf8(given / "analysis.qsf") : path;
}

/// With room for any path at once: where the directory is write-protected, asking twice would make two caches.
std::string cacheOf(const std::string& mainFile, Analysis::Variables variables) {
    std::string path(64 * 1024, '\0');
    const auto size = static_cast<std::uint32_t>(path.size());
    const std::uint32_t written = qsf2sql_get_sqlite_cache_filename_v2(path.data(), size, mainFile.c_str(),
                                                                       variables == Analysis::AllVariables ? 1 : 0);
    if (written == 0)
        throwLastError();
    if (written > size)
        throw std::runtime_error("the path of the cache is too long");
    path.resize(path.find('\0'));
    return path;
}

/// Somebody else may have written the file, and the wait for a lock is shorter than that of a program that runs alone.
std::unique_ptr<Database> openCache(const std::string& file) {
    constexpr int busyTimeout = 10'000;  // milliseconds
    auto database = std::make_unique<Database>();
    readingCache([&] {
        database->open(file, Database::OpenMode::ReadOnly);
        database->setBusyTimeout(busyTimeout);
        database->distrustContent();
    });
    return database;
}

fs::path directoryOf(const std::string& file) {
    const fs::path directory = kvan::sys::pathFromUtf8(file).parent_path();
    return directory.empty() ? "." : directory;
}

bool isInDirectoryOf(const std::string& file, const std::string& other) {
    // Names may differ where the directory is the same, by links or case.
    boost::system::error_code none;
    return fs::equivalent(directoryOf(file), directoryOf(other), none);
}

}  // namespace

void readingCache(const std::function<void()>& work) {
    try {
        work();
    } catch (const kvan::cppsqlite::CppSQLite3Exception& fault) {
        throw std::runtime_error("cache: " + std::string(fault.text()));
    }
}

Analysis::Analysis(const std::string& path, Variables variables)
    : m_mainFile(mainFileOf(path)),
      m_cacheFile(cacheOf(m_mainFile, variables)),
      m_isCacheTemporary(!isInDirectoryOf(m_cacheFile, m_mainFile)),
      m_database(openCache(m_cacheFile)) {}

Analysis::~Analysis() {
    // Some systems do not remove a file that is open.
    m_database.reset();
    boost::system::error_code none;
    if (m_isCacheTemporary)
        fs::remove(kvan::sys::pathFromUtf8(m_cacheFile), none);
}

ArrayStorage::ArrayStorage(const Analysis& analysis, bool rawCalibration)
    : m_handle(qsf2sql_array_open_storage(rawCalibration ? 1 : 0, analysis.mainFile().c_str())) {
    if (m_handle == 0)
        throwLastError();
    boost::system::error_code none;
    m_mainFileSize = fs::file_size(kvan::sys::pathFromUtf8(analysis.mainFile()), none);
}

ArrayStorage::~ArrayStorage() {
    qsf2sql_array_close_storage(m_handle);
}

std::vector<double> ArrayStorage::read(std::uint64_t id) {
    std::uint64_t count = 0;
    if (qsf2sql_array_get_num_elements(m_handle, id, &count) == 0)
        throwLastError();
    // The length of a peak list is a claim of the file; a line takes four bytes at least.
    // A profile is decoded before it is counted, so its length is no claim any more.
    if (id >> 56 < g_firstProfileKind && count > m_mainFileSize / 4)
        throw std::runtime_error("the peak list claims more lines than the file can hold");
    std::vector<double> values(count);
    if (qsf2sql_array_read_double(m_handle, id, values.data()) == 0)
        throwLastError();
    return values;
}

}  // namespace qsf2sql_tool
