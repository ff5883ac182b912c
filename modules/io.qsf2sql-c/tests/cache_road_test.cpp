#include "road.h"

#include <boost/filesystem/fstream.hpp>

#include <unistd.h>

namespace road {
namespace {

class CacheRoad : public Road {
protected:
    static std::ptrdiff_t filesIn(const fs::path& directory) {
        return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
    }

    /// Nobody may write the analysis any more, not even this process, whose temporary directory is `temporary`.
    void protectAnalysis(const fs::path& temporary) const {
        fs::create_directory(temporary);
        fs::permissions(temporary, fs::all_all);
        setenv("TMPDIR", temporary.c_str(), 1);
        const fs::perms readOnly = fs::owner_read | fs::owner_exe | fs::group_read | fs::group_exe;
        fs::permissions(m_directory, readOnly | fs::others_read | fs::others_exe);
        if (geteuid() == 0 && setresuid(65534, 65534, 65534) != 0)
            std::exit(2);
    }
};

TEST_F(CacheRoad, IsMadeOnceAndServesLaterOpens) {
    write({{.profile = std::vector<float>{1}}});
    ASSERT_TRUE(Storage(mainFile(), 0)) << lastError();
    sql("UPDATE Info SET Compressor = ''; CREATE TABLE Mark (x)");
    EXPECT_TRUE(Storage(mainFile()));
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(nullptr, 0, mainFile().c_str()), cacheFile().size() + 1);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM sqlite_master WHERE name = 'Mark'"), "1") << "reused";
    fs::ofstream(mainFile(), std::ios::app) << '\0';
    EXPECT_TRUE(Storage(mainFile()));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM sqlite_master WHERE name = 'Mark'"), "0") << "rebuilt for another size";
    EXPECT_EQ(filesIn(m_directory), 4) << "nothing but the native files and the cache";
}

TEST_F(CacheRoad, WhatTheCacheLacksIsTold) {
    write({{.profile = std::vector<float>{1}}});
    ASSERT_TRUE(Storage(mainFile()));
    const std::pair<const char*, const char*> cases[] = {
        {"UPDATE Info SET Compressor = NULL", "Compressor ID not in SQLite cache."},
        {"UPDATE Info SET Compressor = 'no guid'", "invalid uuid string"},
        {"UPDATE Info SET Compressor = '00000000-0000-0000-0000-000000000000'",
         "unknown compressor id: 00000000-0000-0000-0000-000000000000"},
        {"UPDATE Info SET QSFSize = 'x'", "bad lexical cast: source type value could not be interpreted as target"},
    };
    for (const auto& [change, text] : cases) {
        sql(change);
        EXPECT_FALSE(Storage(mainFile())) << change;
        EXPECT_EQ(lastError(), text);
    }
}

TEST_F(CacheRoad, AViewInTheNameOfATableIsNoCache) {
    write({{.profile = std::vector<float>{1}}});
    ASSERT_TRUE(Storage(mainFile()));
    for (const std::string table : {"Info", "Spectra", "Transformators"}) {
        sql("ALTER TABLE " + table + " RENAME TO Former" + table + "; CREATE VIEW " + table +
            " AS WITH RECURSIVE endless(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM endless) SELECT f.* FROM endless, "
            "Former" +
            table + " f WHERE x < 0");
        EXPECT_TRUE(Storage(mainFile(), 0)) << lastError();
        EXPECT_EQ(sql("SELECT type FROM sqlite_master WHERE name = '" + table + "'"), "table") << "made anew";
    }
}

TEST_F(CacheRoad, ARunWithoutPolaritiesOpensRawOnly) {
    write({});
    EXPECT_FALSE(Storage(mainFile(), 0));
    EXPECT_EQ(lastError(), "Missing polarity information!");
    EXPECT_TRUE(Storage(mainFile(), 1));
}

TEST_F(CacheRoad, AFailedGenerationLeavesWhatItShould) {
    write({{.profile = std::vector<float>{1}}});
    fs::remove(m_directory / "analysis.qsf_xtr");
    EXPECT_FALSE(Storage(mainFile()));
    EXPECT_EQ(lastError(), "Can't open file: " + (m_directory / "analysis.qsf_xtr").string());
    EXPECT_EQ(fs::file_size(cacheFile()), 0u) << "an empty database";

    write({{.profile = std::vector<float>{1}}});
    fs::resize_file(m_directory / "analysis.qsf_idx", fs::file_size(m_directory / "analysis.qsf_idx") - 1);
    EXPECT_FALSE(Storage(mainFile()));
    EXPECT_EQ(lastError(), "Error reading QSF files.");
    EXPECT_FALSE(fs::exists(cacheFile())) << "nothing stays of a damaged analysis";

    write({{.profile = std::vector<float>{1}, .info = {.calibration = calibrationBlob(1, {20, 0.5, 0, 4e12, -1})}}});
    EXPECT_FALSE(Storage(mainFile())) << "a law that has no solution at the ends of the acquired range";
    EXPECT_EQ(lastError(), "complex valued solution in computation due to invalid calibration constants/value range");
    EXPECT_EQ(fs::file_size(cacheFile()), 0u);
}

TEST_F(CacheRoad, AWriteProtectedDirectoryGetsATemporaryCacheUntilItsHandleCloses) {
    write({{.profile = std::vector<std::uint32_t>{1, 2}}});
    const fs::path temporary = m_directory.string() + "-temporary";
    const auto play = [&] {
        protectAnalysis(temporary);
        bool areMade = false;
        {
            const Storage first(mainFile());
            const Storage second(mainFile());
            areMade = first && second && filesIn(temporary) == 2;
        }
        std::exit(areMade && filesIn(temporary) == 0 && !fs::exists(cacheFile()) ? 0 : 1);
    };
    EXPECT_EXIT(play(), ::testing::ExitedWithCode(0), "");
    fs::permissions(m_directory, fs::owner_all);
    fs::remove_all(temporary);
}

TEST_F(CacheRoad, PathsWithoutADirectoryMeanTheCurrentOne) {
    write({{.profile = std::vector<std::uint32_t>{1, 2}}});
    const fs::path former = fs::current_path();
    fs::current_path(m_directory);
    char buffer[32] = "";
    EXPECT_EQ(qsf2sql_get_sqlite_cache_filename(buffer, sizeof buffer, "analysis.qsf"), sizeof buffer);
    EXPECT_STREQ(buffer, "analysis.sqlite");
    EXPECT_TRUE(Storage("analysis.qsf", 0)) << lastError();
    fs::current_path(former);
    EXPECT_TRUE(fs::exists(cacheFile()));
}

}  // namespace
}  // namespace road
