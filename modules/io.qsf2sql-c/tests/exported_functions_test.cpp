#include "road.h"

#include <boost/thread/thread.hpp>
#include <locale>

extern "C" double sum_of_array(const char* path, std::uint64_t id);

namespace road {
namespace {

using ExportedFunctions = Road;

TEST_F(ExportedFunctions, LastErrorIsKeptPerThreadAndNeverCleared) {
    boost::thread([] {
        EXPECT_EQ(qsf2sql_get_last_error_string(nullptr, 0), 11u);
        EXPECT_EQ(lastError(), "<no error>");
    }).join();

    EXPECT_EQ(qsf2sql_array_open_storage(1, "/nowhere/analysis.qsf"), 0u);
    const std::string text = "Can't open file: /nowhere/analysis.qsf";
    EXPECT_EQ(lastError(), text);
    boost::thread([] { EXPECT_EQ(lastError(), "<no error>"); }).join();

    write({{}});
    EXPECT_TRUE(Storage(mainFile()));
    EXPECT_EQ(lastError(), text) << "a success does not clear it";

    char buffer[6] = "-----";
    for (const auto& [size, content] : {std::pair(0U, "-----"), {1U, ""}, {5U, "Can'"}}) {
        EXPECT_EQ(qsf2sql_get_last_error_string(buffer, size), text.size() + 1);
        EXPECT_STREQ(buffer, content);
    }
}

TEST_F(ExportedFunctions, CacheFilenameGivesTheSizePassedInOrTheRoomNeeded) {
    write({{}});
    const auto needed = static_cast<std::uint32_t>(cacheFile().size() + 1);
    std::vector<char> buffer(needed + 7, '-');
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer.data(), needed - 1, mainFile().c_str()), needed);
    EXPECT_EQ(buffer.front(), '-') << "untouched when it does not fit";
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(nullptr, 0, mainFile().c_str()), needed);
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer.data(), needed + 7, mainFile().c_str()), needed + 7);
    EXPECT_EQ(buffer.data(), cacheFile());
    std::fill(buffer.begin(), buffer.end(), '-');
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename_v2(buffer.data(), needed, mainFile().c_str(), 2), needed);
    EXPECT_EQ(buffer.data(), cacheFile());
    EXPECT_EQ(sql("SELECT AllVariables FROM Info"), "1");

    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer.data(), needed, m_directory.string().c_str()), 0u);
    EXPECT_EQ(lastError(), "'" + m_directory.string() + "' is not a regular file (expecting name of analysis.qsf).");
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer.data(), needed, ""), 0u);
    EXPECT_EQ(lastError(), "Specified QSF file '' doesn't exist.");
}

TEST_F(ExportedFunctions, PathsMustBeUtf8) {
    const std::pair<const char*, const char*> cases[] = {
        {"ab\xFF", "Invalid UTF-8 code unit at index 2: 0xff"},
        {"\x80", "Invalid UTF-8 code unit at index 0: 0x80"},
        {"\xC3\xA4\xE2\x82", "Invalid UTF-8 code unit at index 2: 0xe2"},
        {"a\xED\xA0\x80", "Invalid UTF-8 code unit at index 1: 0xed"},
    };
    for (const auto& [path, text] : cases) {
        EXPECT_EQ(qsf2sql_array_open_storage(0, path), 0u);
        EXPECT_EQ(lastError(), text);
        EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(nullptr, 0, path), 0u);
        EXPECT_EQ(lastError(), text);
    }
    const fs::path directory = m_directory / "L\xC3\xB6sung \xE2\x82\xAC";
    AnalysisWriter(directory).finish();
    EXPECT_TRUE(Storage((directory / "analysis.qsf").string()));
}

TEST_F(ExportedFunctions, TextsDoNotDependOnTheLocaleOfTheHost) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale former = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    write({{}});
    const Storage storage(mainFile());
    EXPECT_EQ(storage.failureOf(1234567).substr(0, 60), "Requested array with non-existing Id 1234567 (0x12d687) - up");
    EXPECT_EQ(qsf2sql_array_open_storage(0, (std::string(1500, 'a') + "\xFF").c_str()), 0u);
    EXPECT_EQ(lastError(), "Invalid UTF-8 code unit at index 1500: 0xff");
    std::locale::global(former);
}

TEST_F(ExportedFunctions, BadIdsFailAndLeaveTheHandleUsable) {
    write({{.profile = Counts{1, 2, 3}}});
    const Storage storage(mainFile());
    ASSERT_TRUE(storage);
    const std::string text =
        "Requested array with non-existing Id 4660 (0x1234) - upper 8 bits of the 64-bit Id shouldn't be zero; could "
        "be a type-conversion error in user's code (accidental truncation to 32 bits).";
    EXPECT_EQ(storage.length(0x1234), -1);
    EXPECT_EQ(lastError(), text);
    EXPECT_EQ(storage.failureOf(0x1234), text);
    for (const std::uint64_t kind : {1U, 15U, 23U, 65U, 68U, 255U}) {
        EXPECT_EQ(storage.length(kind << 56 | 100), -1);
        EXPECT_EQ(lastError(), "Shouldn't happen.") << kind;
        EXPECT_EQ(storage.failureOf(kind << 56 | 100), "Shouldn't happen.") << kind;
    }
    EXPECT_EQ(storage.read<double>(id("ProfileIntensityId")), (Doubles{1, 2, 3}));
    qsf2sql_array_close_storage(0);
}

TEST_F(ExportedFunctions, ServeACallerInC) {
    write({{.profile = Counts{1, 2, 4}}});
    EXPECT_EQ(sum_of_array("/nowhere/analysis.qsf", 1), -1.0);
    ASSERT_TRUE(Storage(mainFile()));
    EXPECT_EQ(sum_of_array(mainFile().c_str(), id("ProfileIntensityId")), 7.0);
}

}  // namespace
}  // namespace road
