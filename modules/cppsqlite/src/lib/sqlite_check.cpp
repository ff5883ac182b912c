#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3Exception.h>

#include <boost/throw_exception.hpp>

// Faults of this layer have a code of their own, 1000, which SQLite does not use.
namespace kvan::cppsqlite {

void fail(int code, const char* text) {
    BOOST_THROW_EXCEPTION(CppSQLite3Exception(code, text));
}

void failOwn(const char* text) {
    fail(CppSQLite3Exception::wrapperError, text);
}

void check(int code, const char* text) {
    if (code != SQLITE_OK)
        fail(code, text);
}

// SQLite's words are those of the last call on the connection, so they are taken at once.
void check(int code, sqlite3* connection) {
    if (code != SQLITE_OK)
        fail(code, sqlite3_errmsg(connection));
}

}  // namespace kvan::cppsqlite
