#pragma once

#include <cppsqlite/CppSQLite3Query.h>

#include <concepts>
#include <cstddef>

namespace kvan::cppsqlite {

/// A prepared statement, owned. Moves by assignment. Parameters count from 1 and keep their values over a reset.
///
/// Made for reuse: bind, execQuery or execDML, and again; none of these allocates anything here.
class CppSQLite3Statement {
public:
    CppSQLite3Statement() = default;
    CppSQLite3Statement(CppSQLite3Statement&& other) noexcept = default;
    CppSQLite3Statement& operator=(CppSQLite3Statement&& other) noexcept = default;
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
    /// It does not say whether text or blob is meant: a text is given as `std::string_view`, a blob as `const void*`.
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

    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    using Handle = std::unique_ptr<sqlite3_stmt, Finalize>;

    CppSQLite3Statement(sqlite3* connection, Handle statement);

    void bindInt64(int parameter, std::int64_t value);
    sqlite3_stmt* handle() const;

    sqlite3* m_connection = nullptr;
    Handle m_statement;
};

}  // namespace kvan::cppsqlite
