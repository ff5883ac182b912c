#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include <sqlite3.h>

/// A thin object layer over SQLite: each failure is one exception type, handles are owned by values. A connection, its
/// statements and its queries belong to one thread at a time. Statements and queries must go before their connection
/// is closed.
namespace kvan::cppsqlite {

/// Every failure of this layer. `what()` reads NAME[code]: text, as in "SQLITE_BUSY[5]: database is locked".
class CppSQLite3Exception : public std::runtime_error {
public:
    /// Code of the faults that this layer finds itself, named "CPPSQLITE_ERROR".
    static constexpr int wrapperError = 1000;

    /// A null text counts as empty. With `freeText` the text came from SQLite's allocator and is given back to it.
    CppSQLite3Exception(int code, const char* text, bool freeText = false);

    /// SQLite's primary result code, or `wrapperError`.
    int errorCode() const { return m_code; }

private:
    int m_code;
};

/// The rows of one statement, standing at the first row or at the end. Moves. While it is alive it holds its statement:
/// when it goes or is finalised, its own statement is finalised and a borrowed one is reset, which ends the read.
class CppSQLite3Query {
public:
    CppSQLite3Query() = default;
    CppSQLite3Query(CppSQLite3Query&& other) noexcept;
    CppSQLite3Query& operator=(CppSQLite3Query&& other) noexcept;
    virtual ~CppSQLite3Query();

    bool eof() const;
    void nextRow();
    void finalize();

    /// Columns of the result, known also when there is no row.
    int numFields() const;

    /// Name of a column of the result, also when there is no row. Columns count from 0.
    std::string_view fieldName(int column) const;

    // SQLite converts where the stored type differs from the type asked for.
    int fieldDataType(int column) const;  ///< SQLITE_INTEGER, SQLITE_FLOAT, SQLITE_TEXT, SQLITE_BLOB or SQLITE_NULL
    bool fieldIsNull(int column) const { return fieldDataType(column) == SQLITE_NULL; }
    /// All bytes of the field as text, zero bytes included; empty for NULL. Valid up to the next row.
    std::string_view fieldValue(int column) const;
    int getIntField(int column) const;
    std::int64_t getInt64Field(int column) const;
    double getFloatField(int column) const;
    /// `length` in bytes. Valid up to the next row; null for NULL and for no bytes.
    const unsigned char* getBlobField(int column, int& length) const;

private:
    friend class CppSQLite3DB;
    friend class CppSQLite3Statement;

    /// Takes the first step of `statement`.
    CppSQLite3Query(sqlite3* connection, sqlite3_stmt* statement, bool ownsStatement);

    int release() noexcept;
    sqlite3_stmt* handle() const;
    sqlite3_stmt* handleOf(int column) const;

    sqlite3* m_connection = nullptr;
    sqlite3_stmt* m_statement = nullptr;
    bool m_eof = true;
    int m_columnCount = 0;
    bool m_ownsStatement = false;
};

/// A prepared statement, owned. Moves by assignment. Parameters count from 1 and keep their values over a reset.
///
/// Made for reuse: bind, execQuery or execDML, and again; none of these allocates anything here.
class CppSQLite3Statement {
public:
    CppSQLite3Statement() = default;
    CppSQLite3Statement(CppSQLite3Statement&& other) noexcept;
    CppSQLite3Statement& operator=(CppSQLite3Statement&& other) noexcept;
    virtual ~CppSQLite3Statement();

    void bind(int parameter, double value);
    /// Integers of any width up to 64 bits; an unsigned 64-bit value is stored as the signed one of the same bits.
    template <std::integral Integer>
    void bind(int parameter, Integer value) {
        bindInt64(parameter, static_cast<std::int64_t>(value));
    }
    /// Text of exactly these bytes, copied.
    void bind(int parameter, std::string_view text);
    /// A blob, copied. No bytes give an empty blob, not NULL.
    void bind(int parameter, const void* bytes, std::size_t size);
    /// Neither text nor blob can be told from it: a text is given as `std::string_view`, a blob as `const void*`.
    void bind(int parameter, const char* bytes, std::size_t size) = delete;
    void bindNull(int parameter);

    /// As `bind`, without a copy: the bytes must stay where and what they are until the parameter is bound anew or the
    /// statement goes.
    void bindBorrowed(int parameter, std::string_view text);
    void bindBorrowed(int parameter, const void* bytes, std::size_t size);

    /// Runs a statement that gives no rows and resets it. The number of rows changed.
    int execDML();

    /// Starts anew and takes the first step. The query borrows this statement and resets it at its end.
    CppSQLite3Query execQuery();

    void reset();

private:
    friend class CppSQLite3DB;

    CppSQLite3Statement(sqlite3* connection, sqlite3_stmt* statement);

    void bindInt64(int parameter, std::int64_t value);
    sqlite3_stmt* handle() const;

    sqlite3* m_connection = nullptr;
    sqlite3_stmt* m_statement = nullptr;
};

/// A whole result as texts, in memory. Moves.
class CppSQLite3Table {
public:
    CppSQLite3Table() = default;
    CppSQLite3Table(CppSQLite3Table&& other) noexcept;
    CppSQLite3Table& operator=(CppSQLite3Table&& other) noexcept;
    virtual ~CppSQLite3Table();

    int numFields() const;
    int numRows() const;
    const char* fieldName(int column) const;
    /// Null for NULL. Rows and columns count from 0.
    const char* fieldValue(int row, int column) const;
    void finalize();

private:
    friend class CppSQLite3DB;

    CppSQLite3Table(char** results, int rows, int columns);

    const char* cell(int row, int column) const;

    char** m_results = nullptr;  // the names of the columns, then row by row
    int m_rows = 0;
    int m_columns = 0;
};

/// A connection, owned. Closes itself.
class CppSQLite3DB {
public:
    enum class OpenMode {
        Create,    ///< makes the file if there is none
        Existing,  ///< refuses to
        Private,   ///< a file that is made or filled and is nobody else's: takes no locks, keeps its journal in memory
        Frozen,    ///< a file that nobody can write: takes no locks, looks at no journal, needs nothing beside it
    };

    CppSQLite3DB() = default;
    CppSQLite3DB(const CppSQLite3DB&) = delete;
    CppSQLite3DB& operator=(const CppSQLite3DB&) = delete;
    virtual ~CppSQLite3DB();

    /// Opens the file named in UTF-8, for reading only where it may not be written. Reads nothing of it: what stands in
    /// the file shows at the first statement.
    void open(const std::string& fileName, OpenMode mode = OpenMode::Create);
    /// Refused while a statement or query of this connection is alive.
    void close();

    /// How long a statement waits for the lock of another connection, in milliseconds.
    void setBusyTimeout(int milliseconds);

    /// For a file that somebody else may have written: its schema may not call what has side effects, and the sizes in
    /// its pages are checked. Reads nothing.
    void distrustContent();

    /// How it was opened.
    OpenMode mode() const { return m_mode; }
    /// The file in UTF-8, from the root on, links followed.
    std::string fileName() const;
    /// Whether the file may be read only.
    bool isReadOnly() const;
    /// Whether that name now leads to another file than the open one, or to none.
    bool wasMoved() const;
    /// Whether the head of the file asks for a write-ahead log. Takes no lock and makes no file.
    bool usesWriteAheadLog() const;

    /// Runs all statements of the text. The number of rows changed by the last of them.
    int execDML(const std::string& sql);
    CppSQLite3Query execQuery(const std::string& sql);
    /// The first column of the first row; `nullValue` when it is NULL.
    int execScalar(const std::string& sql, int nullValue = 0);
    CppSQLite3Table getTable(const std::string& sql);
    CppSQLite3Statement compileStatement(const std::string& sql);
    std::int64_t lastRowId() const;

private:
    sqlite3* handle() const;
    sqlite3_stmt* prepare(const std::string& sql) const;

    sqlite3* m_connection = nullptr;
    OpenMode m_mode = OpenMode::Create;
    int m_busyTimeout = 60000;  // milliseconds
};

}  // namespace kvan::cppsqlite
