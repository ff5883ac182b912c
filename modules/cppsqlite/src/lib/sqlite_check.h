#pragma once

#include <sqlite3.h>

/// Where SQLite's codes become exceptions, for all classes of this layer.
namespace kvan::cppsqlite {

[[noreturn]] void fail(int code, const char* text);
/// A fault that this layer finds itself.
[[noreturn]] void failOwn(const char* text);

/// Fails unless the code is SQLITE_OK, with that text or with what SQLite says of the connection.
void check(int code, const char* text);
void check(int code, sqlite3* connection);

template <class Handle>
Handle required(Handle handle, const char* text) {
    if (handle == nullptr)
        failOwn(text);
    return handle;
}

constexpr const char* g_noStatement = "Null Virtual Machine pointer";
constexpr const char* g_noField = "Invalid field index requested";

}  // namespace kvan::cppsqlite
