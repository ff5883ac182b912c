#include "qsf2sql/cache/cache_files.h"

#include <qsf2sql/errors.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <boost/throw_exception.hpp>

namespace kvan::io::qsf2sql::cache {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;

// Paths stay as the caller gave them, relative or not: log lines, failures and the name of the cache repeat them. A
// status that cannot be read counts as that of a missing file.

fs::path cachePathBeside(const fs::path& qsfFile) {
    return fs::path(qsfFile).replace_extension(".sqlite");
}

void checkIfQsfExists(const fs::path& qsfFile) {
    boost::system::error_code ignored;
    const fs::file_status status = fs::status(qsfFile, ignored);
    if (fs::is_regular_file(status))
        return;
    const std::string path = std::string("'").append(sys::pathToUtf8(qsfFile)).append("'");
    if (status.type() == fs::status_error || status.type() == fs::file_not_found)
        BOOST_THROW_EXCEPTION(Qsf2SqlFileNotFoundError("Specified QSF file " + path + " doesn't exist."));
    BOOST_THROW_EXCEPTION(Qsf2SqlFileNotFoundError(path + " is not a regular file (expecting name of analysis.qsf)."));
}

/// Of what stands at the path itself: a link is a link, whatever it leads to.
fs::file_type typeAt(const fs::path& path) {
    boost::system::error_code ignored;
    const fs::file_type type = fs::symlink_status(path, ignored).type();
    return type == fs::status_error ? fs::file_not_found : type;
}

std::unique_ptr<CppSQLite3DB> openCache(const fs::path& cacheFile) {
    // A link could lead to anything, and a pipe would block.
    if (typeAt(cacheFile) != fs::regular_file)
        throwCannotOpenCache();
    auto database = std::make_unique<CppSQLite3DB>();
    database->open(sys::pathToUtf8(cacheFile), CppSQLite3DB::OpenMode::Existing);
    database->distrustContent();  // anybody may have written it
    return database;
}

void throwCannotOpenCache() {
    BOOST_THROW_EXCEPTION(cppsqlite::CppSQLite3Exception(SQLITE_CANTOPEN));
}

}  // namespace kvan::io::qsf2sql::cache
