#include "qsf2sql/cache/sqlite_cache.h"

#include "qsf2sql/cache/cache_owner.h"
#include "qsf2sql/cache/cache_validity.h"

#include <cppsqlite/simple_checked_query.h>
#include <qsf2sql/errors.h>
#include <sysutils/platform.h>
#include <test-support/support.h>

#include <sys/stat.h>

namespace kvan::io::qsf2sql::cache {
namespace {

namespace fs = boost::filesystem;
using cppsqlite::CppSQLite3DB;
using Names = std::unordered_set<std::string>;

const VariablesPrefs g_minimal{VariablesPrefs::Minimal, {"A"}};
const VariablesPrefs g_all{VariablesPrefs::All, {}};
const std::string g_cannotOpen =
    "Caught unexpected CppSQLite3Exception: SQLITE_CANTOPEN[14]: unable to open database file";
const auto g_protected = static_cast<fs::perms>(0555);

void fillSmall(const fs::path& mainFile, CppSQLite3DB& database, bool allVariables, const Names& requested) {
    database.execDML(
        "CREATE TABLE Spectra (Id integer PRIMARY KEY); CREATE TABLE RequestedVariables (RequestedVariable TEXT);"
        "CREATE TABLE Info (SchemaVersion text,QSFSize integer,IDXSize integer,XTRSize integer,AllVariables boolean);"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 5000) INSERT INTO Spectra SELECT i FROM n");
    auto insertName = database.compileStatement("INSERT INTO RequestedVariables VALUES (?)");
    for (const std::string& name : requested)
        insertName.bind(1, name), insertName.execDML();
    auto insertInfo = database.compileStatement("INSERT INTO Info VALUES ('1.6.2c',?,?,?,?)");
    int column = 0;
    for (const char* extension : {".qsf", ".qsf_idx", ".qsf_xtr"})
        insertInfo.bind(++column, fs::file_size(fs::path(mainFile).replace_extension(extension)));
    insertInfo.bind(4, allVariables);
    insertInfo.execDML();
}

/// Starts a process of its own for `action`; it ends with 0 if that gives true.
pid_t start(const std::function<bool()>& action) {
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(action() ? 0 : 1);
    return child;
}

bool endsWell(pid_t child) {
    int status = -1;
    return ::waitpid(child, &status, 0) == child && status == 0;
}

class SqliteCache : public ::testing::Test {
protected:
    SqliteCache() { reset(); }

    /// A new analysis without a cache.
    void reset() {
        for (const auto& entry : fs::directory_iterator(m_directory))
            fs::remove_all(entry);
        for (const std::string& name : m_nativeFiles)
            write(name, "native");
    }

    void write(const std::string& name, const std::string& bytes) const { test::writeFile(m_directory / name, bytes); }

    void sql(const std::string& statements) const {
        CppSQLite3DB database;
        database.open(m_cache.string());
        database.execDML(statements);
    }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_directory))
            names.insert(entry.path().filename().string());
        return names;
    }

    /// Opens and closes the cache: "built", "reused", "temporary", what is wrong with it or what was thrown.
    std::string open(const VariablesPrefs& settings = g_minimal, const CacheFill& fill = fillSmall) {
        std::string outcome = "reused";
        const CacheFill watchedFill = [&](auto&&... arguments) {
            outcome = "built";
            fill(arguments...);
        };
        bool isTemporary = false;
        fs::path cache;
        try {
            auto database = getValidSQLiteCache(m_main, cache, &isTemporary, settings, watchedFill);
            if (cppsqlite::simpleCheckedQuery<int>(*database, "SELECT COUNT(*) FROM Spectra") != 5000 ||
                !isCompatible(*database, settings.mode == VariablesPrefs::All, settings.requested))
                return "wrong cache";
            if (!isTemporary)
                return cache == fs::path(m_main).replace_extension(".sqlite") ? outcome : "wrong path";
            if (cache.parent_path() != fs::temp_directory_path() || !fs::is_regular_file(cache))
                return "wrong path";
            CacheDeleter{cache}(database.release());
            return fs::exists(cache) ? "not deleted" : "temporary";
        } catch (const std::exception& fault) {
            return fault.what();
        }
    }

    const test::TemporaryDirectory m_directory;
    const fs::path m_cache = m_directory / "analysis.sqlite";
    const std::set<std::string> m_nativeFiles{"analysis.qsf", "analysis.qsf_idx", "analysis.qsf_xtr"};
    const std::set<std::string> m_allFiles{"analysis.qsf", "analysis.qsf_idx", "analysis.qsf_xtr", "analysis.sqlite"};
    const fs::path m_main = m_directory / "analysis.qsf";
};

TEST_F(SqliteCache, IsReusedAsLongAsItFits) {
    const std::string noNumber = "bad lexical cast: source type value could not be interpreted as target";
    const std::string noIndexFile =
        "boost::filesystem::file_size: No such file or directory: \"" + m_main.string() + "_idx\"";
    const std::string noMainFile = "Specified QSF file '" + m_main.string() + "' doesn't exist.";
    const std::string notRegular = "'" + m_main.string() + "' is not a regular file (expecting name of analysis.qsf).";
    const auto change = [&](const std::string& statements) { return [=, this] { sql(statements); }; };
    const auto bytes = [&](const char* name, const std::string& text) { return [=, this] { write(name, text); }; };
    const auto replace = [&](const fs::path& path, const std::function<void(const fs::path&)>& make) {
        return [=] { fs::remove(path), make(path); };
    };
    const auto nothing = [](const fs::path&) {};
    const auto directory = [](const fs::path& path) { fs::create_directory(path); };
    const auto pipe = [](const fs::path& path) { ::mkfifo(path.c_str(), 0666); };
    const std::tuple<const char*, std::function<void()>, VariablesPrefs, std::string> cases[] = {
        {"as it is", [] {}, g_minimal, "reused"},
        {"another variable", [] {}, {VariablesPrefs::Minimal, {"A", "B'"}}, "built"},
        {"all variables", [] {}, g_all, "built"},
        {"full", change("UPDATE Info SET AllVariables=7; DROP TABLE RequestedVariables"), g_minimal, "reused"},
        {"no mode", change("UPDATE Info SET AllVariables=NULL"), g_all, "built"},
        {"older", change("UPDATE Info SET SchemaVersion='1.6.2b'"), g_minimal, "built"},
        {"longer version", change("UPDATE Info SET SchemaVersion='1.6.2c'||char(0)"), g_minimal, "built"},
        {"unfinished", change("DELETE FROM Info"), g_minimal, "built"},
        {"no names", change("DROP TABLE RequestedVariables"), g_minimal, "built"},
        {"no names, none asked", change("DROP TABLE RequestedVariables"), {}, "reused"},
        {"main file grown", bytes("analysis.qsf", "native+"), g_minimal, "built"},
        {"index file grown", bytes("analysis.qsf_idx", "native+"), g_minimal, "built"},
        {"extra file grown", bytes("analysis.qsf_xtr", "native+"), g_minimal, "built"},
        {"no size", change("UPDATE Info SET IDXSize=NULL"), g_minimal, noNumber},
        {"text for a size", change("UPDATE Info SET XTRSize='6 bytes'"), g_minimal, noNumber},
        {"index file gone", replace(m_directory / "analysis.qsf_idx", nothing), g_minimal, noIndexFile},
        {"main file gone", replace(m_main, nothing), g_minimal, noMainFile},
        {"directory for the main file", replace(m_main, directory), g_minimal, notRegular},
        {"garbage", bytes("analysis.sqlite", std::string(8192, 'x')), g_minimal, "built"},
        {"empty", bytes("analysis.sqlite", ""), g_minimal, "built"},
        {"cut", [&] { fs::resize_file(m_cache, fs::file_size(m_cache) - 4096); }, g_minimal, "built"},
        {"gone", replace(m_cache, nothing), g_minimal, "built"},
        {"directory", replace(m_cache, directory), g_minimal, g_cannotOpen},
        {"pipe", replace(m_cache, pipe), g_minimal, g_cannotOpen},
    };
    for (const auto& [situation, prepare, settings, outcome] : cases) {
        reset();
        ASSERT_EQ(open(), "built");
        prepare();
        EXPECT_EQ(open(settings), outcome) << situation;
    }
}

TEST_F(SqliteCache, NewCacheLeavesNothingOfTheOldAndWritesThroughNoLink) {
    open();
    fs::rename(m_cache, m_directory / "precious");
    const auto size = fs::file_size(m_directory / "precious");
    fs::create_symlink("precious", m_cache);
    for (const char* companion : {"-journal", "-wal", "-shm"})
        fs::create_directory(m_cache.string() + companion);  // a file could go with SQLite's own cleaning
    EXPECT_EQ(open(g_all), "built");
    EXPECT_FALSE(fs::is_symlink(m_cache));
    EXPECT_EQ(fs::file_size(m_directory / "precious"), size);
    fs::remove(m_directory / "precious");
    EXPECT_EQ(files(), m_allFiles);
}

TEST_F(SqliteCache, FailedBuildLeavesNothingOrAnEmptyDatabase) {
    const CacheFill fillTooMuch = [](auto& mainFile, auto& database, bool all, auto& names) {
        database.execDML("PRAGMA max_page_count=3");
        fillSmall(mainFile, database, all, names);
    };
    const std::pair<CacheFill, std::string> cases[] = {
        {[](auto&&...) { throw Qsf2SqlFileFormatError("bad file"); }, "bad file"},
        {[](auto&&...) { throw Qsf2SqlCannotOpenFileError("no extra file"); }, "no extra file"},
        {[](auto&&...) { throw std::logic_error("bad law"); }, "bad law"},
        {fillTooMuch, "Caught unexpected CppSQLite3Exception: SQLITE_FULL[13]: database or disk is full"},
    };
    for (const auto& [fill, words] : cases) {
        reset();
        ASSERT_EQ(open(), "built");
        EXPECT_EQ(open(g_all, fill), words);
        EXPECT_EQ(files(), words == "bad file" ? m_nativeFiles : m_allFiles);
        EXPECT_TRUE(words == "bad file" || fs::file_size(m_cache) == 0);
        EXPECT_EQ(open(), "built");
    }
}

TEST_F(SqliteCache, ProtectedDirectoryGivesATemporaryCache) {
    const fs::path scratch = m_directory / "scratch";
    fs::create_directory(scratch);
    fs::permissions(scratch, fs::all_all);
    fs::permissions(m_directory, g_protected);
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(test::asNobody([&] { return open(); }), "temporary");
    const std::string log = ::testing::internal::GetCapturedStdout();
    for (const std::string& words :
         {"Directory of QSF file, '" + m_directory.string() + "', write-protected.",
          "Generating new SQLite cache in tmpdir: " + fs::temp_directory_path().string(),
          std::string("Deleting temporary SQLite database '"), std::string("' after last user finished.")})
        EXPECT_NE(log.find(words), std::string::npos) << log;

    const auto openWithTemporary = [&](const fs::path& path, const CacheFill& fill) {
        return test::asNobody([&] { return ::setenv("TMPDIR", path.c_str(), 1) == 0 ? open(g_minimal, fill) : ""; });
    };
    EXPECT_EQ(openWithTemporary(scratch, [](auto&&...) { throw std::runtime_error("bad order"); }), "bad order");
    EXPECT_TRUE(fs::is_empty(scratch));
    EXPECT_EQ(openWithTemporary(m_directory, fillSmall), g_cannotOpen);
}

TEST_F(SqliteCache, OldCacheThatNobodyMayReplaceStays) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs the files of two users";
    open();
    write("analysis.qsf", "native+");
    EXPECT_EQ(test::asNobody([&] { return open(); }), "temporary") << "no right to make files";
    ASSERT_EQ(::chmod(m_directory.c_str(), 01777), 0);
    EXPECT_EQ(test::asNobody([&] { return open(); }), "temporary") << "no right to replace another's file";
    EXPECT_EQ(files(), m_allFiles);
}

TEST_F(SqliteCache, NextBuilderRemovesWhatAKilledOneLeft) {
    ASSERT_TRUE(endsWell(start([&] { return open(g_minimal, [](auto&&...) { ::_exit(0); }) == "never"; })));
    ASSERT_EQ(files().size(), 4u);
    const std::string foreign = "qsf-cache-0123-4567-89ab-xyzw.building";
    write(foreign, "somebody else's");
    boost::system::error_code fault;
    const auto held = sys::PrivateFile::create(m_directory / "qsf-cache-%%%%-%%%%-%%%%-%%%%.building", fault);
    EXPECT_EQ(open(), "built");
    auto expected = m_allFiles;
    expected.insert({held->path().filename().string(), foreign});
    EXPECT_EQ(files(), expected);
}

TEST_F(SqliteCache, LockedCacheIsWaitedForAndNeverReplaced) {
    open();
    CppSQLite3DB owner;
    owner.open(m_cache.string());
    owner.execDML("BEGIN EXCLUSIVE");
    CppSQLite3DB impatient;
    impatient.open(m_cache.string());
    impatient.setBusyTimeout(1);
    EXPECT_THROW(isCompatible(impatient, false, {}), cppsqlite::CppSQLite3Exception);
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        owner.execDML("COMMIT");
    });
    EXPECT_EQ(open(), "reused");
    release.join();
}

TEST_F(SqliteCache, ManyBuildersAtOnceAllGiveRightAnswers) {
    for (int round = 0; round < 60; ++round) {
        reset();
        const bool isMixed = round % 3 == 0;
        const auto isRight = [&](const VariablesPrefs& settings) {
            const std::string outcome = open(settings);
            std::fprintf(stderr, "%s", outcome.size() > 9 ? (outcome + "\n").c_str() : "");
            return outcome == "built" || outcome == "reused" || (isMixed && outcome == "temporary");
        };
        std::vector<pid_t> children;
        for (int index = 0; index < 4; ++index)
            children.push_back(start([&] { return isRight(isMixed && index % 2 == 0 ? g_all : g_minimal); }));
        for (const pid_t child : children)
            EXPECT_TRUE(endsWell(child)) << round;
        EXPECT_EQ(files(), m_allFiles);
    }
}

}  // namespace
}  // namespace kvan::io::qsf2sql::cache
