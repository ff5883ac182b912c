#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include <sqlite3.h>

namespace kvan::cppsqlite {

/// The rows of one statement, standing at the first row or at the end. Moves. While it is alive it holds its statement:
/// when it goes or is finalised, its own statement is finalised and a borrowed one is reset, which ends the read.
class CppSQLite3Query {
public:
    CppSQLite3Query() = default;
    CppSQLite3Query(CppSQLite3Query&& other) noexcept = default;
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
    /// The same as one value, which keeps the bytes and their number together.
    std::span<const unsigned char> blobField(int column) const;

private:
    friend class CppSQLite3DB;
    friend class CppSQLite3Statement;

    /// Finalises a statement of its own, resets a borrowed one. Gives SQLite's code.
    struct EndUse {
        bool owns;
        int operator()(sqlite3_stmt* statement) const noexcept;
    };

    /// Takes the first step of `statement`.
    CppSQLite3Query(sqlite3* connection, sqlite3_stmt* statement, bool ownsStatement);

    sqlite3_stmt* handle() const;
    sqlite3_stmt* handleOf(int column) const;

    sqlite3* m_connection = nullptr;
    std::unique_ptr<sqlite3_stmt, EndUse> m_statement;
    bool m_eof = true;
    int m_columnCount = 0;
};

}  // namespace kvan::cppsqlite
