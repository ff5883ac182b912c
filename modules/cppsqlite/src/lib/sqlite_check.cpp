#include "sqlite_check.h"

#include <cppsqlite/CppSQLite3Exception.h>

#include <boost/throw_exception.hpp>

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

void check(int code, sqlite3* connection) {
    if (code != SQLITE_OK)
        fail(code, sqlite3_errmsg(connection));
}

}  // namespace kvan::cppsqlite
