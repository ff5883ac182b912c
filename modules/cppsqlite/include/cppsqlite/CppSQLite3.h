#pragma once

#include <cppsqlite/CppSQLite3Exception.h>
#include <cppsqlite/CppSQLite3Query.h>
#include <cppsqlite/CppSQLite3Statement.h>
#include <cppsqlite/CppSQLite3Table.h>

#include <cstdint>
#include <memory>
#include <string>

#include <sqlite3.h>

/// A thin object layer over SQLite: each failure is one exception type, handles are owned by values. A connection, its
/// statements and its queries belong to one thread at a time. Statements and queries must go before their connection
/// is closed.
namespace kvan::cppsqlite {

/// A connection, owned. Closes itself.
class CppSQLite3DB {
public:
    enum class OpenMode {
        Create,    ///< makes the file if there is none
        Existing,  ///< refuses to
        ReadOnly,  ///< a file that is there and not to be written, whoever else may write it
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
    CppSQLite3Statement::Handle prepare(const std::string& sql) const;

    struct Close {
        void operator()(sqlite3* connection) const noexcept;
    };

    std::unique_ptr<sqlite3, Close> m_connection;
    OpenMode m_mode = OpenMode::Create;
    int m_busyTimeout = 60000;  // milliseconds
};

}  // namespace kvan::cppsqlite
