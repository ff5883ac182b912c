#include <cppsqlite/CppSQLite3.h>
#include <cppsqlite/plain_tables.h>
#include <cppsqlite/simple_checked_query.h>
#include <test-support/support.h>

namespace kvan::cppsqlite {
namespace {

namespace fs = boost::filesystem;

using test::failureOf;

class CppSQLite3 : public ::testing::Test {
protected:
    CppSQLite3() { m_database.open(":memory:"); }

    CppSQLite3DB m_database;
};

TEST_F(CppSQLite3, ValuesComeBackAsBoundWhateverTheirBytes) {
    const std::string_view text("a\0b\xff", 4);
    const unsigned char blob[] = {0, 1, 255};
    CppSQLite3Statement echo = m_database.compileStatement("SELECT typeof(?1) || ' ' || hex(?1), ?1");
    const std::pair<std::function<void()>, std::string_view> cases[] = {
        {[&] { echo.bind(1, 0.5); }, "real 302E35"},
        {[&] { echo.bind(1, std::int64_t{-7}); }, "integer 2D37"},
        {[&] { echo.bind(1, std::uint64_t{0xFFFFFFFFFFFFFFFF}); }, "integer 2D31"},
        {[&] { echo.bind(1, text); }, "text 610062FF"},
        {[&] { echo.bindBorrowed(1, text); }, "text 610062FF"},
        {[&] { echo.bind(1, std::string_view()); }, "text "},
        {[&] { echo.bind(1, blob, sizeof blob); }, "blob 0001FF"},
        {[&] { echo.bindBorrowed(1, blob, sizeof blob); }, "blob 0001FF"},
        {[&] { echo.bind(1, blob, 0); }, "blob "},
        {[&] { echo.bind(1, static_cast<const void*>(nullptr), 0); }, "blob "},
        {[&] { echo.bindNull(1); }, "null "},
    };
    for (const auto& [bind, expected] : cases) {
        bind();
        EXPECT_EQ(echo.execQuery().fieldValue(0), expected);
    }
    echo.bind(1, text);
    EXPECT_EQ(echo.execQuery().fieldValue(1), text);
    echo.bind(1, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(echo.execQuery().getInt64Field(1), std::numeric_limits<std::int64_t>::min());
    echo.bind(1, 0.1);
    EXPECT_EQ(echo.execQuery().getFloatField(1), 0.1);
    echo.bind(1, blob, sizeof blob);
    const CppSQLite3Query query = echo.execQuery();
    EXPECT_TRUE(std::ranges::equal(query.blobField(1), blob));
}

TEST_F(CppSQLite3, StatementsServeManyReadsAndEndThem) {
    m_database.execDML("CREATE TABLE t (v INTEGER); INSERT INTO t VALUES (1), (2), (3)");
    CppSQLite3Statement select = m_database.compileStatement("SELECT v FROM t WHERE v >= ? ORDER BY v");
    for (int first = 1; first < 4; ++first) {
        select.bind(1, first);
        EXPECT_EQ(select.execQuery().getIntField(0), first);
    }
    CppSQLite3Query query = select.execQuery();
    query = select.execQuery();
    EXPECT_EQ(query.getIntField(0), 3);
    for (int step = 0; step < 3; ++step) {
        query.nextRow();
        EXPECT_TRUE(query.eof()) << "a further step would run the statement again";
    }
    query.finalize();
    m_database.execDML("DROP TABLE t");  // refused while a read goes on
}

TEST_F(CppSQLite3, FaultsHaveTheirCodesAndWords) {
    CppSQLite3DB closed;
    CppSQLite3Statement noStatement;
    CppSQLite3Table noTable;
    m_database.execDML("CREATE TABLE t (v INTEGER PRIMARY KEY); INSERT INTO t VALUES (7)");
    CppSQLite3Statement insert = m_database.compileStatement("INSERT INTO t VALUES (?)");
    CppSQLite3Query row = m_database.execQuery("SELECT v FROM t");
    const CppSQLite3Table table = m_database.getTable("SELECT v FROM t");
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { closed.execDML("BEGIN"); }, "CPPSQLITE_ERROR[1000]: Database not open"},
        {[&] { closed.open("/nonexistent/file"); }, "SQLITE_CANTOPEN[14]: unable to open database file"},
        {[&] { noStatement.bind(1, 1); }, "CPPSQLITE_ERROR[1000]: Null Virtual Machine pointer"},
        {[&] { CppSQLite3Query().eof(); }, "CPPSQLITE_ERROR[1000]: Null Virtual Machine pointer"},
        {[&] { noTable.numRows(); }, "CPPSQLITE_ERROR[1000]: Null Results pointer"},
        {[&] { row.getIntField(1); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { row.getIntField(-1); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { table.fieldValue(1, 0); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { table.fieldValue(-1, 0); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { table.fieldValue(0, 1); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { table.fieldName(-1); }, "CPPSQLITE_ERROR[1000]: Invalid field index requested"},
        {[&] { insert.bind(2, 0.5); }, "SQLITE_RANGE[25]: Error binding double param"},
        {[&] { insert.bind(2, "text"); }, "SQLITE_RANGE[25]: Error binding string param"},
        {[&] { insert.bind(2, &row, 1); }, "SQLITE_RANGE[25]: Error binding blob param"},
        {[&] { insert.bind(2, 1); }, "SQLITE_RANGE[25]: Error binding int64 param"},
        {[&] { insert.bindNull(2); }, "SQLITE_RANGE[25]: Error binding NULL param"},
        {[&] { insert.bind(1, 7), insert.execDML(); }, "SQLITE_CONSTRAINT[19]: UNIQUE constraint failed: t.v"},
        {[&] { m_database.execDML("nonsense"); }, "SQLITE_ERROR[1]: near \"nonsense\": syntax error"},
        {[&] { m_database.execQuery("SELECT * FROM u"); }, "SQLITE_ERROR[1]: no such table: u"},
        {[&] { m_database.execScalar("SELECT v FROM t WHERE v = 1"); }, "CPPSQLITE_ERROR[1000]: Invalid scalar query"},
        {[&] { m_database.close(); }, "SQLITE_BUSY[5]: Unable to close database"},
        {[] { throw CppSQLite3Exception(26, nullptr); }, "UNKNOWN_ERROR[26]: "},
        {[] { throw CppSQLite3Exception(101, sqlite3_mprintf("x"), true); }, "SQLITE_DONE[101]: x"},
    };
    for (const auto& [action, words] : cases)
        EXPECT_EQ(failureOf(action), words);
    insert.bind(1, 8);
    EXPECT_EQ(insert.execDML(), 1) << "a refused statement is ready again";
}

TEST_F(CppSQLite3, ResultsWithoutRowsHaveColumns) {
    CppSQLite3Query none = m_database.execQuery("SELECT 1, 2 WHERE 0");
    EXPECT_TRUE(none.eof());
    EXPECT_EQ(none.numFields(), 2);
    EXPECT_EQ(m_database.execScalar("SELECT NULL", -3), -3);

    const CppSQLite3Table table = m_database.getTable("SELECT 'a' x, NULL y UNION ALL SELECT 'b', 1.5 ORDER BY x");
    EXPECT_EQ(table.numRows(), 2);
    EXPECT_STREQ(table.fieldName(1), "y");
    EXPECT_EQ(table.fieldValue(0, 1), nullptr);
    EXPECT_STREQ(table.fieldValue(1, 1), "1.5");
}

TEST_F(CppSQLite3, SimpleCheckedQueryTakesOneValueOfItsType) {
    EXPECT_EQ(simpleCheckedQuery<std::int64_t>(m_database, "SELECT -9223372036854775808"),
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(simpleCheckedQuery<std::string>(m_database, "SELECT 'two words'"), "two words");
    const std::pair<const char*, const char*> cases[] = {
        {"SELECT 1 WHERE 0", "Query result unexpectedly empty: "},
        {"SELECT NULL", "Query result unexpectedly NULL: "},
        {"SELECT ''", "Query result has wrong type: "},
        {"SELECT 1.0", "Query result has wrong type: "},
        {"SELECT 2147483648", "Query result has wrong type: "},
        {"SELECT 1 UNION ALL SELECT 2", "Query resulted in more than one result: "},
    };
    for (const auto& row : cases)
        EXPECT_EQ(failureOf([&] { simpleCheckedQuery<int>(m_database, row.first); }),
                  std::string(row.second) + row.first);
    EXPECT_FALSE(simpleOptionalQuery<int>(m_database, "SELECT 1 WHERE 0"));
}

TEST_F(CppSQLite3, TablesThatComputeAreFoundWithoutRunningThem) {
    const char* const endless = "WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) SELECT x FROM n";
    m_database.execDML(std::string("CREATE TABLE plain (x); CREATE VIEW aView AS ") + endless +
                       "; CREATE VIRTUAL TABLE aVirtual USING fts5(x); CREATE TABLE computed (x, y AS (x LIKE "
                       "'%a%a%a%a%a%b')); CREATE TABLE stored (x, y AS (x) STORED); CREATE INDEX i ON plain (x)");
    EXPECT_FALSE(findComputedTable(m_database, {"plain", "missing"}));
    EXPECT_EQ(findComputedTable(m_database, {"plain", "AVIEW"}), "aView");
    EXPECT_EQ(findComputedTable(m_database, {"avirtual", "plain"}), "aVirtual");
    EXPECT_EQ(findComputedTable(m_database, {"plain", "computed"}), "computed");
    EXPECT_EQ(findComputedTable(m_database, {"plain", "stored"}), "stored");
}

TEST_F(CppSQLite3, OpensLazilyAndOnlyWhatIsThere) {
    const test::TemporaryDirectory directory;
    const fs::path path = directory / "file";
    CppSQLite3DB file;
    EXPECT_EQ(failureOf([&] { file.open(path.string(), CppSQLite3DB::OpenMode::Existing); }),
              "SQLITE_CANTOPEN[14]: unable to open database file");
    EXPECT_FALSE(fs::exists(path));
    test::writeFile(path, std::string(4096, 'x'));
    file.open(path.string(), CppSQLite3DB::OpenMode::Existing);
    file.distrustContent();
    EXPECT_EQ(failureOf([&] { file.execQuery("SELECT * FROM t"); }), "UNKNOWN_ERROR[26]: file is not a database");
}

TEST_F(CppSQLite3, AFrozenFileIsReadAsItStands) {
    const test::TemporaryDirectory directory;
    const fs::path path = directory / "frozen %41";
    CppSQLite3DB writer;
    writer.open(path.string());
    writer.execDML("PRAGMA journal_mode=WAL; CREATE TABLE t (v); INSERT INTO t VALUES (1)");
    writer.close();
    CppSQLite3DB frozen;
    frozen.open(path.string(), CppSQLite3DB::OpenMode::Frozen);
    EXPECT_EQ(frozen.execScalar("SELECT v FROM t"), 1);
    EXPECT_FALSE(fs::exists(path.string() + "-shm")) << "nothing stands beside it";
    EXPECT_EQ(failureOf([&] { frozen.execDML("DELETE FROM t"); }),
              "SQLITE_READONLY[8]: attempt to write a readonly database");
}

TEST_F(CppSQLite3, NamesOfFilesAreNoMoreThanNames) {
    const fs::path home = fs::current_path();
    const test::TemporaryDirectory directory;
    fs::current_path(directory);
    const std::pair<const char*, CppSQLite3DB::OpenMode> cases[] = {
        {"file:plain?mode=memory", CppSQLite3DB::OpenMode::Create},
        {"50%41?mode=memory#", CppSQLite3DB::OpenMode::Private},
        {"file:private", CppSQLite3DB::OpenMode::Private},
    };
    for (const auto& [name, mode] : cases) {
        for (const std::string& path : {std::string(name), (directory / ("absolute " + std::string(name))).string()}) {
            CppSQLite3DB file;
            file.open(path, mode);
            file.execDML("BEGIN; CREATE TABLE t (v)");
            EXPECT_TRUE(fs::is_regular_file(path)) << path;
            EXPECT_FALSE(fs::exists(path + "-journal") && mode == CppSQLite3DB::OpenMode::Private) << path;
            file.execDML("COMMIT");
        }
    }
    fs::current_path(home);
}

}  // namespace
}  // namespace kvan::cppsqlite
