#include <cppsqlite/CppSQLite3Exception.h>

#include <iterator>
#include <memory>
#include <string>

#include <sqlite3.h>

// The text of a failure carries the name of its code, since callers and logs show it alone. Only primary codes have
// names; extended ones, and what later versions of SQLite add, are unknown by name but not by number.
namespace kvan::cppsqlite {

namespace {

// By code, from 0 on.
constexpr const char* g_primaryNames[] = {
    "SQLITE_OK",       "SQLITE_ERROR",      "SQLITE_INTERNAL", "SQLITE_PERM",      "SQLITE_ABORT", "SQLITE_BUSY",
    "SQLITE_LOCKED",   "SQLITE_NOMEM",      "SQLITE_READONLY", "SQLITE_INTERRUPT", "SQLITE_IOERR", "SQLITE_CORRUPT",
    "SQLITE_NOTFOUND", "SQLITE_FULL",       "SQLITE_CANTOPEN", "SQLITE_PROTOCOL",  "SQLITE_EMPTY", "SQLITE_SCHEMA",
    "SQLITE_TOOBIG",   "SQLITE_CONSTRAINT", "SQLITE_MISMATCH", "SQLITE_MISUSE",    "SQLITE_NOLFS", "SQLITE_AUTH",
    "SQLITE_FORMAT",   "SQLITE_RANGE"};
static_assert(std::size(g_primaryNames) == SQLITE_RANGE + 1);

const char* codeName(int code) {
    if (code >= SQLITE_OK && code <= SQLITE_RANGE)
        return g_primaryNames[code];
    switch (code) {
        case SQLITE_ROW:
            return "SQLITE_ROW";
        case SQLITE_DONE:
            return "SQLITE_DONE";
        case CppSQLite3Exception::wrapperError:
            return "CPPSQLITE_ERROR";
        default:
            return "UNKNOWN_ERROR";
    }
}

std::string formatMessage(int code, const char* text, bool freeText) {
    // Freed also when the message below finds no memory.
    const std::unique_ptr<char, decltype(&sqlite3_free)> allocated(freeText ? const_cast<char*>(text) : nullptr,
                                                                   &sqlite3_free);
    return std::string(codeName(code)) + "[" + std::to_string(code) + "]: " + (text == nullptr ? "" : text);
}

}  // namespace

CppSQLite3Exception::CppSQLite3Exception(int code, const char* text, bool freeText)
    : std::runtime_error(formatMessage(code, text, freeText)), m_code(code) {}

std::string_view CppSQLite3Exception::text() const {
    constexpr std::string_view separator = "]: ";
    const std::string_view whole = what();
    return whole.substr(whole.find(separator) + separator.size());
}

CppSQLite3Exception::CppSQLite3Exception(int code) : CppSQLite3Exception(code, sqlite3_errstr(code)) {}

}  // namespace kvan::cppsqlite
