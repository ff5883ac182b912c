#include "last_error.h"
#include "storage_handle.h"

#include <cppsqlite/CppSQLite3.h>
#include <io/qsf2sql/qsf2sql.h>
#include <logger/logger.h>
#include <sysutils/platform.h>

#include <algorithm>
#include <boost/format.hpp>
#include <boost/throw_exception.hpp>
#include <cstring>
#include <locale>
#include <memory>
#include <stdexcept>
#include <string>

#include <omp.h>
#include <utf8.h>

// The boundary to C. Inside, failures are exceptions and nothing else; here each becomes the last error of its thread
// and a result of 0. Results are stored last, so that a failure leaves the caller's memory as it was.
//
// A handle is the address of its object: nothing is looked up, and a wrong one cannot be detected. Closing, the error
// text and the number of threads have no guard, since nothing in them throws.

namespace {

using kvan::io::c::rememberFailure;
using kvan::io::c::StorageHandle;
using kvan::logging::Logger;

Logger boundaryLogger() {
    return Logger::getLogger("kvan.io.qsf2sql.c_dll");
}

StorageHandle& instance(std::uint64_t handle) {
    return *reinterpret_cast<StorageHandle*>(handle);
}

kvan::io::Qsf2Sql& storage(std::uint64_t handle) {
    return instance(handle).storage();
}

// Checked before the conversion to a path, which could not say which byte is wrong.
void checkUtf8(const std::string& text) {
    const auto fault = utf8::find_invalid(text.begin(), text.end());
    if (fault != text.end())
        BOOST_THROW_EXCEPTION(std::runtime_error(
            str(boost::format("Invalid UTF-8 code unit at index %1%: %2$#x", std::locale::classic()) %
                (fault - text.begin()) % static_cast<unsigned>(static_cast<unsigned char>(*fault)))));
}

std::string sqliteCacheFilename(const std::string& path, bool allVariables) {
    checkUtf8(path);
    kvan::io::VariablesPrefs variables;
    variables.mode = allVariables ? kvan::io::VariablesPrefs::All : kvan::io::VariablesPrefs::Minimal;
    boost::filesystem::path cacheFile;
    const auto database =
        kvan::io::Qsf2Sql::getValidSQLiteCache(kvan::sys::pathFromUtf8(path), cacheFile, nullptr, variables);
    if (!database)
        BOOST_THROW_EXCEPTION(std::runtime_error("kvan::io::Qsf2Sql::getValidSQLiteCache() returned nullptr."));
    return kvan::sys::pathToUtf8(cacheFile);
}

}  // namespace

extern "C" {

std::uint64_t qsf2sql_array_open_storage(int raw_calibration, const char* path) try {
    KVAN_LOG(boundaryLogger(), TRACE) << "Opening " << path << ", raw_calibration = " << raw_calibration;
    checkUtf8(path);
    auto handle = std::make_unique<StorageHandle>(path, raw_calibration != 0);
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle.release()));
} catch (const std::exception& fault) {
    return static_cast<std::uint64_t>(rememberFailure(fault));
}

void qsf2sql_array_close_storage(std::uint64_t handle) {
    KVAN_LOG(boundaryLogger(), TRACE) << "Closing handle " << handle;
    if (handle != 0)
        std::unique_ptr<StorageHandle>(&instance(handle)).reset();  // 0 is what an open that failed gave
}

int qsf2sql_array_get_num_elements(std::uint64_t handle, std::uint64_t id, std::uint64_t* out_count) try {
    *out_count = storage(handle).getArrayLength(id);
    return 1;
} catch (const std::exception& fault) {
    return rememberFailure(fault);
}

// The three reads differ in the type that elements are converted to. None knows how much room the caller has: that is
// for the caller to take from the number of elements.

int qsf2sql_array_read_double(std::uint64_t handle, std::uint64_t id, double* out) try {
    storage(handle).readArrayData(id, out);
    return 1;
} catch (const std::exception& fault) {
    return rememberFailure(fault);
}

int qsf2sql_array_read_float(std::uint64_t handle, std::uint64_t id, float* out) try {
    storage(handle).readArrayData(id, out);
    return 1;
} catch (const std::exception& fault) {
    return rememberFailure(fault);
}

int qsf2sql_array_read_uint32(std::uint64_t handle, std::uint64_t id, std::uint32_t* out) try {
    storage(handle).readArrayData(id, out);
    return 1;
} catch (const std::exception& fault) {
    return rememberFailure(fault);
}

// The text is cut to the room and always ends with a zero byte. The result is the room for the whole text, whatever was
// copied, so a caller may ask with no room at all and then again. Asking does not change what is remembered.
std::uint32_t qsf2sql_get_last_error_string(char* buffer, std::uint32_t size) {
    const char* const text = kvan::io::c::lastErrorText();
    const std::size_t length = std::strlen(text);
    if (size != 0) {
        const std::size_t copied = std::min<std::size_t>(length, size - 1);
        std::memcpy(buffer, text, copied);
        buffer[copied] = '\0';
    }
    return static_cast<std::uint32_t>(length + 1);
}

std::uint32_t qsf2sql_get_sqlite_cache_filename(char* buffer, std::uint32_t size, const char* path) {
    return qsf2sql_get_sqlite_cache_filename_v2(buffer, size, path, 0);
}

// Three results: 0 for a failure; more than the room for a path that does not fit, and nothing is written; the room
// itself when the path was written. A cache that is missing or out of date is made before its name is given.
std::uint32_t qsf2sql_get_sqlite_cache_filename_v2(char* buffer, std::uint32_t size, const char* path,
                                                   int all_variables) try {
    KVAN_LOG(boundaryLogger(), TRACE) << "Get SQLite cache for " << path;
    const std::string cacheFile = sqliteCacheFilename(path, all_variables != 0);
    const std::size_t needed = cacheFile.size() + 1;
    // Whether the path was written shows in the result alone: room that was enough comes back as it was given.
    if (size < needed)
        return static_cast<std::uint32_t>(needed);
    std::memcpy(buffer, cacheFile.c_str(), needed);
    return size;
} catch (const std::exception& fault) {
    return static_cast<std::uint32_t>(rememberFailure(fault));
}

// OpenMP keeps the number for each thread of the caller, so this holds for the thread that calls and for no other.
void qsf2sql_set_num_threads(int count) {
    omp_set_num_threads(count);
}

}  // extern "C"
