#pragma once

#include <stdexcept>
#include <string_view>

namespace kvan::cppsqlite {

/// Every failure of this layer. `what()` reads NAME[code]: text, as in "SQLITE_BUSY[5]: database is locked".
class CppSQLite3Exception : public std::runtime_error {
public:
    /// Code of the faults that this layer finds itself, named "CPPSQLITE_ERROR".
    static constexpr int wrapperError = 1000;

    /// A null text counts as empty. With `freeText` the text came from SQLite's allocator and is given back to it.
    CppSQLite3Exception(int code, const char* text, bool freeText = false);
    /// With SQLite's own words for the code.
    explicit CppSQLite3Exception(int code);

    /// SQLite's primary result code, or `wrapperError`.
    int errorCode() const { return m_code; }

    /// The text alone, out of `what()`.
    std::string_view text() const;

private:
    int m_code;
};

}  // namespace kvan::cppsqlite
