#include "qsf2sql/cache_generator.h"

#include "qsf2sql/cache/cache_schema.h"
#include "qsf2sql/passes/condition_pass.h"
#include "qsf2sql/passes/extra_pass.h"
#include "qsf2sql/passes/index_pass.h"
#include "qsf2sql/passes/main_file_pass.h"
#include "qsf2sql/qsflib/BlockWalk.h"

#include <logger/logger.h>
#include <qsf2sql/qsf_blocked_reader.h>
#include <sysutils/platform.h>

#include <boost/filesystem/operations.hpp>
#include <utility>

namespace kvan::io {

namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;
using qsf2sql::cache::g_createIndexes;
using qsf2sql::cache::g_createTables;
using qsf2sql::cache::g_schemaVersion;

/// Holds the rows of 100,000 spectra, so that the update pass and the indexes find them in memory; a tenth of the time.
constexpr char g_pageCache[] = "PRAGMA cache_size=-32768";  // KiB

void insertRequestedVariables(CppSQLite3DB& database, const std::unordered_set<std::string>& names) {
    auto insert = database.compileStatement("INSERT INTO RequestedVariables (RequestedVariable) VALUES (?)");
    for (const std::string& name : names) {
        insert.bindBorrowed(1, name);
        insert.execDML();
    }
}

/// Not failing here: a side file that is missing is reported when its pass opens it.
std::string sizeText(const fs::path& file) {
    boost::system::error_code ignored;
    return std::to_string(fs::file_size(file, ignored));
}

}  // namespace

// The three files meet on one number: the index entry's, counted from 0, is one less than that of the quick-info record
// and of the spectrum condition, which is `Spectra.Id`. What a pass hands on is a value; what it stores, no later pass
// reads back, but for the rows of `Spectra` that the third one completes.
//
// The row of `Info` goes in last: a cache without it is unfinished, however it came about. The sizes in it are taken
// before the side files are read, so that a file that grows meanwhile makes the cache stale instead of wrong.
//
// Any failure goes to the caller, whose transaction then ends with nothing stored.
void CacheGenerator::fillSqlCacheFromQsf(const fs::path& mainFile, CppSQLite3DB& database, bool allVariables,
                                         const std::unordered_set<std::string>& requestedVariables) {
    const auto logger = logging::Logger::getLogger("kvan.io.qsf2sql.CacheGenerator");
    database.execDML(g_pageCache);
    for (const char* const statement : g_createTables)
        database.execDML(statement);
    insertRequestedVariables(database, requestedVariables);

    const fs::path indexFile = fs::path(mainFile).replace_extension(".qsf_idx");
    const fs::path extraFile = fs::path(mainFile).replace_extension(".qsf_xtr");
    KVAN_LOG(logger, TRACE) << "QSF_IDX: " << sys::pathToUtf8(indexFile);
    KVAN_LOG(logger, TRACE) << "QSF_XTR: " << sys::pathToUtf8(extraFile);
    QSFBlockedReader reader(mainFile, QSFBlockedReader::Access::Scan);
    KVAN_LOG(logger, TRACE) << "QSF file opened successfully.";
    KVAN::io::QSF::BlockWalk walk(reader);

    using namespace qsf2sql::passes;
    MainFileHead head = readMainFileHead(walk, {allVariables, requestedVariables}, database, logger);
    const std::string infoInsert =
        "INSERT INTO Info (SchemaVersion, QSFSize, IDXSize, XTRSize, Compressor, AllVariables) VALUES ('" +
        std::string(g_schemaVersion) + "'," + sizeText(mainFile) + "," + sizeText(indexFile) + "," +
        sizeText(extraFile) + ",'" + head.compressor + "'," + (allVariables ? "1" : "0") + ")";
    const NumberSet withoutData = readIndexFile(indexFile, database, logger);
    const auto keys = readExtraFile(extraFile, head.facts, withoutData, std::move(head.references), database, logger);
    readConditions(walk, head.variables, keys, database, logger);

    head.variables.writeTo(database);
    for (const char* const statement : g_createIndexes)
        database.execDML(statement);
    database.execDML(infoInsert);
}

}  // namespace kvan::io
