// Any three native files end in a cache or in one of the failures that a generation declares. The input is the main
// file, then the index file, each after its length as 4 bytes, then the extra file.

#include "qsf2sql/cache_generator.h"

#include <algorithm>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

namespace {

namespace fs = boost::filesystem;

class Directory {
public:
    ~Directory() { fs::remove_all(path); }
    const fs::path path = fs::temp_directory_path() / fs::unique_path("qsf-fuzz-%%%%-%%%%-%%%%");
};

std::string_view takeFramed(std::string_view& input) {
    std::uint32_t size = 0;
    std::memcpy(&size, input.data(), std::min(sizeof size, input.size()));
    input.remove_prefix(std::min(sizeof size, input.size()));
    const std::string_view content = input.substr(0, size);
    input.remove_prefix(content.size());
    return content;
}

void write(const fs::path& file, std::string_view content) {
    fs::ofstream(file, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
}

void generate(const fs::path& mainFile) {
    kvan::cppsqlite::CppSQLite3DB database;
    database.open(":memory:");
    database.execDML("BEGIN TRANSACTION");
    kvan::io::CacheGenerator::fillSqlCacheFromQsf(mainFile, database, true, {});
    database.execDML("COMMIT TRANSACTION");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Directory directory;
    fs::create_directories(directory.path);
    std::string_view input(reinterpret_cast<const char*>(data), size);
    write(directory.path / "analysis.qsf", takeFramed(input));
    write(directory.path / "analysis.qsf_idx", takeFramed(input));
    write(directory.path / "analysis.qsf_xtr", input);
    try {
        generate(directory.path / "analysis.qsf");
    } catch (const std::runtime_error&) {  // damaged files, a database that refuses, ranges without a whole mass
    } catch (const std::logic_error&) {    // impossible times, calibrations that fail
    } catch (const std::bad_cast&) {       // one variable declared with two types
    }
    return 0;
}
